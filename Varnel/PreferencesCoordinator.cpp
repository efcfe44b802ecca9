#include <Varnel/PreferencesCoordinator.h>

#include <utility>

namespace Varnel {

void PreferencesCoordinator::show(std::unique_ptr<PreferencesWindowController> window) {
    close();
    m_window = std::move(window);
    m_window->showWindowAndFocus();
}

void PreferencesCoordinator::close() {
    if (const auto window = std::move(m_window)) {
        window->close();
    }
}

void PreferencesCoordinator::updateConnectionState(bool isConnected, bool hasConnectionError,
                                                   const QString& errorMessage) {
    if (PreferencesWindowController* open = window()) {
        open->updateConnectionState(isConnected, hasConnectionError, errorMessage);
    }
}

} // namespace Varnel
