#include <VarnelPreferences/PreferencesWindowController.h>

#include <VarnelPreferences/PreferencesWindow.h>

#include <utility>

namespace Varnel {

PreferencesWindowController::PreferencesWindowController(const PreferencesDraft& draft, bool isConnected,
                                                         bool hasConnectionError, PreferencesInitialTab initialTab,
                                                         PreferencesHandlers handlers, TimerFactory& timers)
    : m_window(
          new PreferencesWindow(std::make_unique<PreferencesForm>(draft, std::move(handlers), timers), initialTab)) {
    updateConnectionState(isConnected, hasConnectionError);
}

PreferencesWindowController::~PreferencesWindowController() {
    m_window->form().detach();
    m_window->hide();
    m_window->deleteLater();
}

void PreferencesWindowController::showWindowAndFocus() {
    m_window->showAndFocus();
}

void PreferencesWindowController::close() {
    m_window->closeQuietly();
}

void PreferencesWindowController::updateConnectionState(bool isConnected, bool hasConnectionError,
                                                        const QString& errorMessage) {
    m_window->form().updateConnection(isConnected, hasConnectionError, errorMessage);
}

void PreferencesWindowController::setNotificationPermission(NotificationPermission permission) {
    m_window->form().setNotificationPermission(permission);
}

void PreferencesWindowController::showLaunchAtLoginError(const QString& description, bool actualState) {
    m_window->form().refuseLaunchAtLogin(description, actualState);
}

void PreferencesWindowController::setApplicationMenu(QMenu* menu) {
    m_window->setApplicationMenu(menu);
}

QWidget* PreferencesWindowController::window() const {
    return m_window;
}

} // namespace Varnel
