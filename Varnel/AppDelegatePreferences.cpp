#include <Varnel/AppDelegate.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <QMenu>

#include <utility>

namespace Varnel {

void AppDelegate::showPreferencesWindow(PreferencesInitialTab initialTab) {
    if (m_connection.isClosed()) {
        return;
    }
    m_preferencesCoordinator.close(); // first: what is still pending belongs into the new draft
    // What a sign-out could not delete is not offered again.
    const std::optional<QString> password =
        m_settingsStore.isSignedOut() ? std::nullopt : m_storedPassword.read(m_settings.account);
    auto window = std::make_unique<PreferencesWindowController>(
        m_preferencesCoordinator.draft(password.value_or(QString())), m_connection.isConnected(),
        m_values.errorMessage.has_value(), initialTab, preferencesHandlers(), m_platform.timers);
    window->setApplicationMenu(m_applicationMenu.get());
    m_preferencesCoordinator.open(std::move(window));
    m_preferencesCoordinator.updateConnectionState(m_connection.isConnected(), m_values.errorMessage);
    startTask("notification permission", ifAlive(weak_from_this(), &AppDelegate::showNotificationAuthorization));
}

void AppDelegate::bringPreferencesToFront() {
    if (PreferencesWindowController* window = m_preferencesCoordinator.window()) {
        window->showWindowAndFocus();
    } else {
        showPreferencesWindow(PreferencesInitialTab::general);
    }
}

PreferencesHandlers AppDelegate::preferencesHandlers() {
    const std::weak_ptr<AppDelegate> weak = weak_from_this();
    PreferencesHandlers handlers;
    handlers.save = ifAlive(weak, &AppDelegate::applyPreferences);
    handlers.autoSave = ifAlive(weak, &AppDelegate::applyAutoSavedPreferences);
    handlers.signOut = ifAlive(weak, &AppDelegate::signOut, true);
    handlers.closed = ifAlive(weak, [](AppDelegate& self) { self.m_preferencesCoordinator.close(); });
    return handlers;
}

QCoro::Task<bool> AppDelegate::applyPreferences(PreferencesDraft draft) {
    const auto self = shared_from_this();
    const Connection::Attempt attempt = m_connection.begin(Connection::Initiator::user);
    takeAccountChange(m_preferencesCoordinator.save(draft));
    co_await m_announcements->synchronizeNotificationAuthorizationIfNeeded(true);
    updateStatusBar();
    startTask("notification permission", ifAlive(weak_from_this(), &AppDelegate::showNotificationAuthorization));
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected(); // a later save decides
    }
    if (trimmed(m_settings.account).isEmpty()) {
        signOut(false);
        rejectSignIn(attempt, QStringLiteral("Set your SEMS account to connect."));
        co_return false;
    }
    co_await m_storedPassword.unlock(m_settings.account, KeychainAccess::writing);
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected();
    }
    QString password = trimmed(draft.password);
    if (password.isEmpty()) {
        password = m_storedPassword.read(m_settings.account).value_or(QString());
    }
    if (password.isEmpty()) {
        rejectSignIn(attempt, QStringLiteral("Password is required for sign in."));
        co_return false;
    }
    storePassword(password);
    co_await connect(attempt, password);
    co_return m_connection.isConnected();
}

void AppDelegate::takeAccountChange(PreferencesCoordinator::AccountChange change) {
    m_todayOutput.setOwner(m_settings.account, m_settings.stationID);
    switch (change) {
    case PreferencesCoordinator::AccountChange::none:
        return;
    case PreferencesCoordinator::AccountChange::account:
        forgetAccount();
        break;
    case PreferencesCoordinator::AccountChange::station:
        forgetReadings();
        m_todayOutput.restore();
        if (m_pollingService) {
            startPolling(); // a poll in flight would bring the former station back
        }
        break;
    }
    updateStatusBar();
}

void AppDelegate::applyAutoSavedPreferences(const PreferencesDraft& draft) {
    const PreferencesCoordinator::AutoSaved saved = m_preferencesCoordinator.autoSave(draft);
    if (saved.isFirstNotificationSwitchedOn) {
        startTask("notification permission", ifAlive(weak_from_this(), &AppDelegate::askForNotificationPermission));
    }
    if (m_connection.isConnected() && saved.isPollIntervalChanged) {
        startPolling();
    }
    updateStatusBar();
}

QCoro::Task<void> AppDelegate::askForNotificationPermission() {
    const auto self = shared_from_this();
    co_await m_announcements->synchronizeNotificationAuthorizationIfNeeded(true);
    updateStatusBar();
    co_await showNotificationAuthorization();
}

QCoro::Task<void> AppDelegate::showNotificationAuthorization() {
    const auto self = shared_from_this();
    const NotificationPermission permission = co_await m_announcements->permission();
    if (PreferencesWindowController* window = m_preferencesCoordinator.window()) {
        window->setNotificationPermission(permission);
    }
}

} // namespace Varnel
