#pragma once

#include <VarnelPreferences/PreferencesWindowController.h>

#include <memory>

namespace Varnel {

/// Holds the one preferences window, if it is open.
class PreferencesCoordinator {
public:
    /// Null when no window is held. One that is hidden with the application is still held, with what was typed.
    PreferencesWindowController* window() const { return m_window.get(); }

    /// Keeps the window and shows it in front with focus; the one held before is closed and dropped.
    void show(std::unique_ptr<PreferencesWindowController> window);

    void close();

    /// Tells an open window of the connection; does nothing otherwise.
    void updateConnectionState(bool isConnected, bool hasConnectionError, const QString& errorMessage);

private:
    std::unique_ptr<PreferencesWindowController> m_window;
};

} // namespace Varnel
