#pragma once

class QWindow;

namespace Varnel {

/// Whether this desktop lets a running program add and remove taskbar buttons: X11 does, Wayland offers nothing.
bool canControlTaskbar();

/// Shows or hides the taskbar button of a window that is mapped, by the `_NET_WM_STATE` message of the Extended Window
/// Manager Hints. Without effect where `canControlTaskbar` is false.
void setSkipsTaskbar(const QWindow& window, bool skips);

/// Brings a window that is mapped to the front, by the `_NET_ACTIVE_WINDOW` message of the same hints, as a tool does
/// by which the person chooses a window. Qt sends it with the time of the person's last input to this program, which
/// lies before what was done in the launcher or the panel since: GNOME takes that for a theft of the focus and refuses
/// it. Without effect outside of X11.
void bringToFront(const QWindow& window);

} // namespace Varnel
