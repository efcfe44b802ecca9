#include <Varnel/AppDelegate.h>

#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

namespace {
/// A bundled program that may not notify and was not refused has nobody to ask: no service is there.
NotificationPermission permissionToShow(NotificationAuthorizationState state, bool isBundled) {
    switch (state) {
    case NotificationAuthorizationState::notDetermined:
        return isBundled ? NotificationPermission::noService : NotificationPermission::notInstalled;
    case NotificationAuthorizationState::denied:
        return NotificationPermission::denied;
    case NotificationAuthorizationState::authorized:
        break;
    }
    return NotificationPermission::authorized;
}

QCoro::Task<bool> notConnected() {
    co_return false;
}
} // namespace

void AppDelegate::showPreferencesWindow(PreferencesInitialTab initialTab) {
    if (m_isTerminated) {
        return;
    }
    m_preferencesCoordinator.close();
    auto window = std::make_unique<PreferencesWindowController>(currentDraft(), m_semsSession.has_value(),
                                                                m_lastErrorMessage.has_value(), initialTab,
                                                                preferencesHandlers(), m_platform.timers);
    window->setApplicationMenu(m_applicationMenu.get());
    m_preferencesCoordinator.show(std::move(window));
    showConnectionState();
    showNotificationAuthorization();
}

void AppDelegate::bringPreferencesToFront() {
    PreferencesWindowController* window = m_preferencesCoordinator.window();
    if (!window) {
        showPreferencesWindow(PreferencesInitialTab::general);
        return;
    }
    window->showWindowAndFocus();
}

void AppDelegate::showConnectionState() {
    m_preferencesCoordinator.updateConnectionState(m_semsSession.has_value(), m_lastErrorMessage.has_value(),
                                                   m_lastErrorMessage.value_or(QString()));
}

PreferencesDraft AppDelegate::currentDraft() {
    PreferencesDraft draft{m_settings, storedPassword().value_or(QString())};
    draft.pollIntervalSeconds = m_settings.clampedPollInterval();
    draft.launchAtLogin = m_settings.launchAtLogin || m_launchAtLoginManager.isEnabledForUI();
    return draft;
}

PreferencesHandlers AppDelegate::preferencesHandlers() {
    const std::weak_ptr<AppDelegate> weak = weak_from_this();
    PreferencesHandlers handlers;
    handlers.save = [weak](PreferencesDraft draft) {
        const auto self = weak.lock();
        return self ? self->applyPreferences(std::move(draft)) : notConnected();
    };
    handlers.autoSave = [weak](const PreferencesDraft& draft) {
        if (const auto self = weak.lock()) {
            self->applyAutoSavedPreferences(draft);
        }
    };
    handlers.signOut = [weak] {
        if (const auto self = weak.lock()) {
            self->signOut(true);
        }
    };
    handlers.closed = [weak] {
        if (const auto self = weak.lock()) {
            self->m_preferencesCoordinator.close();
        }
    };
    return handlers;
}

QCoro::Task<bool> AppDelegate::applyPreferences(PreferencesDraft draft) {
    const auto self = shared_from_this();
    const int save = ++m_latestSave;
    takeAccountSettings(draft);
    applyDockIconPreference();
    applyApplicationIconIfAvailable();
    applyLaunchAtLoginPreference(LaunchAtLoginRequest::save);
    co_await synchronizeNotificationAuthorizationIfNeeded(true);
    showNotificationAuthorization();
    if (save != m_latestSave || m_isTerminated) {
        co_return m_semsSession.has_value(); // a later save decides
    }
    if (trimmedAccount().isEmpty()) {
        signOut(false);
        rejectSignIn(QStringLiteral("Set your SEMS account to connect."));
        co_return false;
    }
    co_await m_keychain.unlock(keychainAccount(), KeychainAccess::writing);
    if (save != m_latestSave || m_isTerminated) {
        co_return m_semsSession.has_value();
    }
    QString password = trimmed(draft.password);
    if (password.isEmpty()) {
        password = storedPassword().value_or(QString());
    }
    if (password.isEmpty()) {
        rejectSignIn(QStringLiteral("Password is required for sign in."));
        co_return false;
    }
    m_cachedPassword = password;
    storePassword(password);
    co_await authenticateAndStartPolling(password);
    co_return m_semsSession.has_value();
}

void AppDelegate::takeAccountSettings(const PreferencesDraft& draft) {
    const AppSettings before = m_settings;
    const QString baseURL = trimmed(draft.baseURL);
    m_settings = draft;
    m_settings.pollIntervalSeconds = draft.clampedPollInterval();
    m_settings.baseURL = baseURL.isEmpty() ? AppSettings::defaults().baseURL : baseURL;
    m_settings.account = trimmed(draft.account);
    m_settings.stationID = trimmed(draft.stationID);
    m_settingsStore.save(m_settings);
    const bool isOtherAccount = trimmed(before.account).compare(m_settings.account, Qt::CaseInsensitive) != 0;
    const bool isOtherStation = trimmed(before.stationID) != m_settings.stationID;
    if (isOtherAccount) {
        forgetAccount();
        updateStatusBar();
    } else if (isOtherStation) {
        forgetReadings();
        restoreOutputHistoryIfAvailable();
        if (m_pollingService) {
            startPolling(); // a poll in flight would bring the former station back
        }
        updateStatusBar();
    }
}

void AppDelegate::applyAutoSavedPreferences(const PreferencesDraft& draft) {
    const AppSettings before = m_settings;
    m_settings = draft;
    m_settings.pollIntervalSeconds = draft.clampedPollInterval();
    m_settings.baseURL = before.baseURL;
    m_settings.account = before.account;
    m_settings.stationID = before.stationID;
    m_settingsStore.save(m_settings);
    if (m_settings.showDockIcon != before.showDockIcon) {
        applyDockIconPreference();
    }
    applyApplicationIconIfAvailable();
    applyLaunchAtLoginPreference(LaunchAtLoginRequest::save);
    if (!before.hasEnabledProductionNotifications() && m_settings.hasEnabledProductionNotifications()) {
        startTask("notification permission", [weak = weak_from_this()] {
            const auto self = weak.lock();
            return self ? self->askForNotificationPermission() : completedTask();
        });
    }
    if (m_semsSession && m_settings.clampedPollInterval() != before.clampedPollInterval()) {
        startPolling();
    }
    updateStatusBar();
}

QCoro::Task<void> AppDelegate::askForNotificationPermission() {
    const auto self = shared_from_this();
    co_await synchronizeNotificationAuthorizationIfNeeded(true);
    co_await showNotificationAuthorizationTask();
}

void AppDelegate::showNotificationAuthorization() {
    startTask("notification permission", [weak = weak_from_this()] {
        const auto self = weak.lock();
        return self ? self->showNotificationAuthorizationTask() : completedTask();
    });
}

QCoro::Task<void> AppDelegate::showNotificationAuthorizationTask() {
    const auto self = shared_from_this();
    const NotificationAuthorizationState state = co_await m_notificationService.authorizationStatus();
    if (PreferencesWindowController* window = m_preferencesCoordinator.window()) {
        window->setNotificationPermission(permissionToShow(state, m_platform.bundle.identifier.has_value()));
    }
}

} // namespace Varnel
