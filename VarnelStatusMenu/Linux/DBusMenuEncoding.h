#pragma once

#include <VarnelStatusMenu/Linux/PanelKind.h>
#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariantMap>

namespace Varnel {

/// A row and its properties, "(ia{sv})".
struct DBusMenuItem {
    int id = 0;
    QVariantMap properties;
    bool operator==(const DBusMenuItem&) const = default;
};

/// The names of properties of a row that went back to their defaults, "(ias)".
struct DBusMenuItemKeys {
    int id = 0;
    QStringList names;
};

/// A row with the rows below it, "(ia{sv}av)".
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayoutItem> children;
};

/// What happened to a row, "(isvu)".
struct DBusMenuEvent {
    int id = 0;
    QString eventId;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemKeys& keys);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemKeys& keys);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayoutItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayoutItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event);

/// Makes the types known to QtDBus; may be called more than once.
void registerDBusMenuTypes();

/// The exported menu as the rows of com.canonical.dbusmenu: always the same ones in the same order, those that the menu
/// has not at the moment with "visible" false. So a choice that crosses an update means what the person saw.
QList<DBusMenuItem> dbusMenuRows(const ExportedMenu& menu, KeyNames keyNames);

/// The row with that id; null when the menu has it not at the moment.
const ExportedMenuItem* exportedItem(const ExportedMenu& menu, int id);

/// The properties whose names were asked for; no names ask for all.
QVariantMap selectProperties(const QVariantMap& properties, const QStringList& names);

} // namespace Varnel

Q_DECLARE_METATYPE(Varnel::DBusMenuItem)
Q_DECLARE_METATYPE(Varnel::DBusMenuItemKeys)
Q_DECLARE_METATYPE(Varnel::DBusMenuLayoutItem)
Q_DECLARE_METATYPE(Varnel::DBusMenuEvent)
