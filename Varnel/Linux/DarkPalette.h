#pragma once

namespace Varnel {

/// Gives the application dark colours while the desktop prefers them and Qt's part of the desktop has light ones, as on
/// GNOME, whose preference Qt 6.4 does not know. Otherwise the colours are Qt's own. Windows that are open change too.
void followDarkPreference(bool prefersDark);

} // namespace Varnel
