#pragma once

#include <VarnelStatusMenu/Linux/DBusMenuTypes.h>
#include <VarnelStatusMenu/StatusMenu.h>

namespace Varnel {

/// The exported menu as the rows of com.canonical.dbusmenu, in order. What can be chosen keeps its id whatever stands
/// above it, so that a choice which crosses an update means what the person saw.
QList<DBusMenuItem> dbusMenuRows(const ExportedMenu& menu);

/// The row with that id; null when the menu has none.
const ExportedMenuItem* exportedItem(const ExportedMenu& menu, int id);

/// Whether both have the same rows in the same order, whatever their texts.
bool haveSameLayout(const QList<DBusMenuItem>& a, const QList<DBusMenuItem>& b);

/// The properties whose names were asked for; no names ask for all.
QVariantMap selectProperties(const QVariantMap& properties, const QStringList& names);

} // namespace Varnel
