#include <VarnelStatusMenu/Linux/ItemFace.h>

#include <QDBusMetaType>
#include <QtEndian>

#include <array>
#include <cmath>

namespace Varnel {

namespace {

/// The sizes that panels ask for; each is drawn by itself, because a scaled text blurs.
constexpr std::array iconSizes{16, 22, 24, 32, 48};
/// Twice the height that waybar gives an icon by default: halved, the text stays sharp, and it is exact at twice the
/// resolution.
constexpr int widePictureHeight = 32;

QList<ItemPixmap> icon(const QString& title, TitleAge age, TitleForm form, qreal devicePixelRatio) {
    QList<ItemPixmap> pixmaps;
    switch (form) {
    case TitleForm::label:
        for (const int size : iconSizes) {
            pixmaps.append(itemPixmap(sunPicture(size, age)));
        }
        break;
    case TitleForm::widePicture:
        pixmaps.append(itemPixmap(
            wideTitlePicture(title, static_cast<int>(std::lround(widePictureHeight * devicePixelRatio)), age)));
        break;
    case TitleForm::square:
        for (const int size : iconSizes) {
            pixmaps.append(itemPixmap(squareTitlePicture(title, size, age)));
        }
        break;
    }
    return pixmaps;
}

} // namespace

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

ItemFace itemFace(const StatusItemContent& content, const PanelKind& panel, qreal devicePixelRatio) {
    const TitleAge age = content.outdatedLine ? TitleAge::outdated : TitleAge::current;
    ItemFace face;
    face.title = content.title;
    // Some panels say the description of the icon where the tooltip has no text, which would be the same twice.
    const qsizetype end = panel.showsToolTipText ? content.toolTip.indexOf(QLatin1Char('\n')) : -1;
    face.toolTip = content.toolTip.left(end);
    face.toolTipText = end < 0 ? QString() : content.toolTip.mid(end + 1);
    face.label = panel.titleForm == TitleForm::label ? titleLabel(content.title) : QString();
    face.icon = icon(content.title, age, panel.titleForm, devicePixelRatio);
    face.iconDescription =
        content.outdatedLine ? content.title + QStringLiteral(". ") + *content.outdatedLine : QString();
    return face;
}

} // namespace Varnel
