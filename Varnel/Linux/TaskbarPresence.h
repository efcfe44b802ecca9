#pragma once

class QWindow;

namespace Varnel {

/// Whether this desktop lets a running program add and remove taskbar buttons: X11 does, Wayland offers nothing.
bool canControlTaskbar();

/// Shows or hides the taskbar button of a window that is mapped, by the `_NET_WM_STATE` message of the Extended Window
/// Manager Hints. Without effect where `canControlTaskbar` is false.
void setSkipsTaskbar(const QWindow& window, bool skips);

} // namespace Varnel
