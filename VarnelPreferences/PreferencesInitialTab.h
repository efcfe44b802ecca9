#pragma once

namespace Varnel {

/// The pane that the preferences window opens on. The values are the positions of the tabs.
enum class PreferencesInitialTab { general = 0, account = 1, notifications = 2 };

} // namespace Varnel
