#pragma once

#include <VarnelStatusMenu/Linux/PanelKind.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>
#include <VarnelStatusMenu/StatusItem.h>

#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>

namespace Varnel {

/// A picture as the item protocol carries it, "(iiay)": 32 bits a pixel, alpha first, in network byte order.
struct ItemPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
    bool operator==(const ItemPixmap&) const = default;
};

/// The tooltip as the item protocol carries it, "(sa(iiay)ss)".
struct ItemToolTip {
    QString iconName;
    QList<ItemPixmap> icon;
    QString title;
    QString text;
};

ItemPixmap itemPixmap(const QImage& image);

QDBusArgument& operator<<(QDBusArgument& argument, const ItemPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, ItemPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const ItemToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, ItemToolTip& toolTip);

/// Makes the types known to QtDBus; may be called more than once.
void registerItemProtocolTypes();

/// What a panel shows of the item, in the form the panel can show.
struct ItemFace {
    QString title;
    QString toolTip;         ///< its title, "ToolTip.title" of the protocol
    QString toolTipText;     ///< what stands below, where the panel shows it
    QString label;           ///< of `TitleForm::label` alone
    QList<ItemPixmap> icon;  ///< one form only: hosts differ in which of square and wide they take
    QString iconDescription; ///< for a screen reader; empty: the title says it all
};

/// `devicePixelRatio` is that of the panel's screen.
ItemFace itemFace(const StatusItemContent& content, const PanelKind& panel, qreal devicePixelRatio);

} // namespace Varnel

Q_DECLARE_METATYPE(Varnel::ItemPixmap)
Q_DECLARE_METATYPE(Varnel::ItemToolTip)
