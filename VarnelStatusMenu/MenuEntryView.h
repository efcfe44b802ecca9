#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QWidget>

#include <memory>

namespace Varnel {

/// The widget that shows an entry of the menu: chart, row, error or spacer; none for separators and commands, which
/// every kind of menu draws in the way of the desktop.
std::unique_ptr<QWidget> menuEntryView(const StatusMenuEntry& entry);

/// The enabled command whose key equivalent is the pressed key.
std::optional<StatusMenuCommand> commandForKey(const StatusMenu& menu, QKeyCombination key);

} // namespace Varnel
