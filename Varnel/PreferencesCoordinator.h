#pragma once

#include <VarnelPreferences/PreferencesWindowController.h>

#include <memory>

namespace Varnel {

/// Holds the one preferences window, if it is open.
class PreferencesCoordinator {
public:
    /// Null when no window is held. A window that the user has closed counts as none.
    PreferencesWindowController* window() const;

    /// Keeps the window and shows it in front with focus; the one held before is closed and dropped.
    void show(std::unique_ptr<PreferencesWindowController> window);

    void close();

    /// Tells an open window of the connection; does nothing otherwise.
    void updateConnectionState(bool isConnected, bool hasConnectionError, const QString& errorMessage);

private:
    std::unique_ptr<PreferencesWindowController> m_window;
};

} // namespace Varnel
