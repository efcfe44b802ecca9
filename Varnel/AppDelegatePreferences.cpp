#include <Varnel/AppDelegate.h>

#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

void AppDelegate::showPreferencesWindow(PreferencesInitialTab initialTab) {
    if (m_connection.isClosed()) {
        return;
    }
    m_preferencesCoordinator.close(); // first: what is still pending belongs into the new draft
    std::optional<QString> password;
    if (!m_settingsStore.isSignedOut()) { // else what the sign-out could not delete would be offered again
        // What is in use needs no keychain, which may be slow; but an attempt that is under way may be with a newer
        // one.
        const bool isInUse = m_connection.isConnected() && !m_connection.isUnderWay();
        password = isInUse ? m_connection.password() : m_storedPassword->read(m_settings.account);
    }
    auto window = std::make_unique<PreferencesWindowController>(
        m_preferencesCoordinator.draft(password.value_or(QString())), m_connection.isConnected(),
        m_values.errorMessage.has_value(), initialTab, preferencesHandlers(), m_platform.timers);
    window->setApplicationMenu(m_applicationMenu.get());
    m_preferencesCoordinator.open(std::move(window));
    m_preferencesCoordinator.updateConnectionState(m_connection, m_values.errorMessage);
    m_announcements->checkPermission();
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
    handlers.cancelSignIn = ifAlive(weak, &AppDelegate::cancelSignIn);
    handlers.closed = ifAlive(weak, [](AppDelegate& self) { self.m_preferencesCoordinator.close(); });
    return handlers;
}

QCoro::Task<bool> AppDelegate::applyPreferences(PreferencesDraft draft) {
    const auto self = shared_from_this();
    const Connection::Attempt attempt = m_connection.begin(Connection::Initiator::user);
    takeAccountChange(m_preferencesCoordinator.save(draft));
    co_await m_announcements->synchronizeNotificationAuthorizationIfNeeded(true);
    updateStatusBar();
    m_announcements->checkPermission();
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected(); // a later save decides
    }
    if (trimmed(m_settings.account).isEmpty()) {
        signOut(false);
        rejectSignIn(attempt, {QCoreApplication::translate("AppDelegate", "Set your SEMS account to connect."),
                               ConnectionState::WantedField::account, false});
        co_return false;
    }
    co_await m_storedPassword->unlock(m_settings.account, KeychainAccess::writing);
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected();
    }
    QString password = trimmed(draft.password);
    if (password.isEmpty()) {
        const std::optional<QString> stored = co_await m_storedPassword->readPatiently(m_settings.account);
        password = stored.value_or(QString());
    }
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected();
    }
    if (password.isEmpty()) {
        rejectSignIn(attempt, {QCoreApplication::translate("AppDelegate", "Password is required for sign in."),
                               ConnectionState::WantedField::password, false});
        co_return false;
    }
    m_preferencesCoordinator.rememberSignOut(false);
    co_await m_storedPassword->save(m_settings.account, password);
    if (!m_connection.isCurrent(attempt)) {
        co_return m_connection.isConnected();
    }
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
        m_announcements->requestPermission();
    }
    if (m_connection.isConnected() && saved.isPollIntervalChanged) {
        startPolling();
    }
    updateStatusBar();
}

} // namespace Varnel
