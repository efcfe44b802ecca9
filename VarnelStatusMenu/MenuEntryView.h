#pragma once

#include <VarnelStatusMenu/MenuView.h>
#include <VarnelStatusMenu/StatusMenu.h>

#include <memory>

namespace Varnel {

/// The widget that shows an entry of the menu: chart, row, error or spacer; none for separators and commands, which
/// every kind of menu draws in the way of the desktop.
std::unique_ptr<MenuView> menuEntryView(const StatusMenuEntry& entry);

/// The enabled command whose key equivalent is the pressed key.
std::optional<StatusMenuCommand> commandForKey(const StatusMenu& menu, QKeyCombination key);

} // namespace Varnel
