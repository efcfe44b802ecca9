#include <VarnelStatusMenu/Linux/ItemProtocolTypes.h>

#include <QDBusMetaType>
#include <QtEndian>

namespace Varnel {

ItemPixmap itemPixmap(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    ItemPixmap pixmap{argb.width(), argb.height(), {}};
    const qsizetype rowBytes = qsizetype{4} * argb.width();
    pixmap.pixels.resize(rowBytes * argb.height());
    for (int row = 0; row < argb.height(); ++row) {
        qToBigEndian<quint32>(argb.constScanLine(row), argb.width(), pixmap.pixels.data() + row * rowBytes);
    }
    return pixmap;
}

// QtDBus prescribes that the reading operators return their argument.
// NOLINTBEGIN(bugprone-return-const-ref-from-parameter)

QDBusArgument& operator<<(QDBusArgument& argument, const ItemPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ItemPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const ItemToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ItemToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

// NOLINTEND(bugprone-return-const-ref-from-parameter)

void registerItemProtocolTypes() {
    qDBusRegisterMetaType<ItemPixmap>();
    qDBusRegisterMetaType<QList<ItemPixmap>>();
    qDBusRegisterMetaType<ItemToolTip>();
}

} // namespace Varnel
