#include <Varnel/PreferencesCoordinator.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

namespace {
ConnectionState::Connecting connectingOf(std::optional<Connection::Initiator> initiator) {
    if (!initiator) {
        return ConnectionState::Connecting::no;
    }
    return *initiator == Connection::Initiator::user ? ConnectionState::Connecting::forUser
                                                     : ConnectionState::Connecting::inBackground;
}
} // namespace

PreferencesCoordinator::PreferencesCoordinator(AppSettings& settings, AppSettingsStore& store,
                                               const PlatformServices& platform)
    : m_settings(settings)
    , m_store(store)
    , m_platform(platform)
    , m_launchAtLoginManager(platform.loginItem, platform.bundle.identifier) {}

PreferencesDraft PreferencesCoordinator::draft(const QString& password) const {
    PreferencesDraft draft{m_settings, password};
    draft.pollIntervalSeconds = m_settings.clampedPollInterval();
    draft.launchAtLogin = m_settings.launchAtLogin || m_launchAtLoginManager.isEnabledForUI();
    return draft;
}

PreferencesCoordinator::AccountChange PreferencesCoordinator::save(const PreferencesDraft& draft) {
    const AppSettings before = std::exchange(m_settings, draft);
    const QString baseURL = trimmed(draft.baseURL);
    m_settings.baseURL = baseURL.isEmpty() ? AppSettings::defaults().baseURL : baseURL;
    m_settings.account = trimmed(draft.account);
    m_settings.stationID = trimmed(draft.stationID);
    m_settings.pollIntervalSeconds = draft.clampedPollInterval();
    storeSettings();
    applyDockIconPreference();
    applyApplicationIconIfAvailable();
    applyLaunchAtLoginPreference(LaunchAtLoginRequest::save);
    const QString formerAccount = trimmed(before.account);
    if (formerAccount.isEmpty() && !m_settings.account.isEmpty()) {
        return AccountChange::station; // nobody's history is to be removed, and this account's may be there
    }
    if (formerAccount.compare(m_settings.account, Qt::CaseInsensitive) != 0) {
        return AccountChange::account;
    }
    return trimmed(before.stationID) == m_settings.stationID ? AccountChange::none : AccountChange::station;
}

PreferencesCoordinator::AutoSaved PreferencesCoordinator::autoSave(const PreferencesDraft& draft) {
    const AppSettings before = std::exchange(m_settings, draft);
    m_settings.baseURL = before.baseURL;
    m_settings.account = before.account;
    m_settings.stationID = before.stationID;
    m_settings.pollIntervalSeconds = draft.clampedPollInterval();
    storeSettings();
    if (m_settings.showDockIcon != before.showDockIcon) {
        applyDockIconPreference();
    }
    applyApplicationIconIfAvailable();
    applyLaunchAtLoginPreference(LaunchAtLoginRequest::save);
    return {m_settings.clampedPollInterval() != before.clampedPollInterval(),
            m_settings.hasEnabledProductionNotifications() && !before.hasEnabledProductionNotifications()};
}

void PreferencesCoordinator::open(std::unique_ptr<PreferencesWindowController> window) {
    close();
    m_window = std::move(window);
    m_window->showAccountNotices(m_notices);
    m_window->setDockIconRefused(m_isDockIconRefused);
    m_window->showWindowAndFocus();
}

void PreferencesCoordinator::showPermission(NotificationPermission permission) {
    if (m_window) {
        m_window->setNotificationPermission(permission);
    }
}

void PreferencesCoordinator::close() {
    if (const auto window = std::move(m_window)) {
        window->close();
    }
}

void PreferencesCoordinator::updateConnectionState(const Connection& connection,
                                                   const std::optional<QString>& errorMessage) {
    if (!m_window) {
        return;
    }
    ConnectionState state;
    state.connecting = connectingOf(connection.initiatorUnderWay());
    state.isConnected = connection.isConnected();
    state.hasError = errorMessage.has_value();
    state.errorMessage = errorMessage.value_or(QString());
    if (state.hasError && m_explanation.errorMessage == state.errorMessage) {
        state.wanted = m_explanation.wanted;
        state.wasTried = m_explanation.wasTried;
        state.details = m_explanation.details;
    }
    m_window->updateConnectionState(state);
}

void PreferencesCoordinator::storeSettings() {
    setNotice(AccountNotice::settingsNotStored, !m_store.save(m_settings));
}

void PreferencesCoordinator::rememberSignOut(bool isSignedOut) {
    if (m_store.isSignedOut() != isSignedOut) {
        setNotice(AccountNotice::settingsNotStored, !m_store.setSignedOut(isSignedOut));
    }
}

void PreferencesCoordinator::storeAgainIfFailed() {
    if (m_notices.testFlag(AccountNotice::settingsNotStored)) {
        storeSettings();
    }
}

void PreferencesCoordinator::setNotice(AccountNotice notice, bool isShown) {
    m_notices.setFlag(notice, isShown);
    if (m_window) {
        m_window->showAccountNotices(m_notices);
    }
}

void PreferencesCoordinator::applyDockIconPreference() {
    const ActivationPolicy policy = m_settings.showDockIcon ? ActivationPolicy::regular : ActivationPolicy::accessory;
    const bool isChange = m_platform.shell.activationPolicy() != policy;
    setDockIconRefused(isChange && !m_platform.shell.setActivationPolicy(policy));
    if (m_isDockIconRefused) {
        qCWarning(lcApp, "Failed to set activation policy to %s",
                  policy == ActivationPolicy::regular ? "regular" : "accessory");
    } else if (isChange) {
        applyApplicationIconIfAvailable();
        if (m_window) {
            m_window->showWindowAndFocus();
        }
    }
}

void PreferencesCoordinator::setDockIconRefused(bool isRefused) {
    m_isDockIconRefused = isRefused;
    if (m_window) {
        m_window->setDockIconRefused(isRefused);
    }
}

void PreferencesCoordinator::applyApplicationIconIfAvailable() {
    m_platform.shell.setApplicationIcon(
        m_platform.bundle.iconPath(m_settings.iconAppearanceMode, m_platform.appearance.isDark()));
}

void PreferencesCoordinator::applyLaunchAtLoginPreference(LaunchAtLoginRequest request) {
    const bool isStart = request == LaunchAtLoginRequest::start;
    if (isStart && !m_settings.launchAtLogin) {
        return; // an entry that the user made, or that outlived lost settings, is the user's
    }
    if (m_settings.launchAtLogin == m_launchAtLoginManager.isEnabledForUI()) {
        return; // an unbundled program would be told otherwise that it cannot have what nobody wants
    }
    const Result<void> changed = m_launchAtLoginManager.setEnabled(m_settings.launchAtLogin);
    if (changed) {
        return;
    }
    const QString description = changed.error().localizedDescription();
    qCWarning(lcApp, "%s", qUtf8Printable(description));
    if (isStart) {
        return;
    }
    m_settings.launchAtLogin = m_launchAtLoginManager.isEnabledForUI();
    storeSettings();
    if (m_window) {
        m_window->showLaunchAtLoginError(description, m_settings.launchAtLogin);
    }
}

} // namespace Varnel
