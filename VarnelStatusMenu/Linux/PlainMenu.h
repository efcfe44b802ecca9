#pragma once

#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>

namespace Varnel {

/// Pops up the text menu at the pointer, as a panel would that draws such menus by itself. It keeps its rows until it
/// closes, and frees itself then.
void popUpPlainMenu(const ExportedMenu& menu, const StatusItemHandlers& handlers);

} // namespace Varnel
