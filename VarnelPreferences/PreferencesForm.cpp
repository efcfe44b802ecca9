#include <VarnelPreferences/PreferencesForm.h>

#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

int shownMinutes(std::int64_t pollIntervalSeconds) {
    const std::int64_t step = AppSettings::pollIntervalStepSeconds;
    return static_cast<int>((AppSettings::clampedPollInterval(pollIntervalSeconds) + step / 2) / step);
}

PreferencesForm::PreferencesForm(const PreferencesDraft& draft, PreferencesHandlers handlers, TimerFactory& timers)
    : m_draft(draft)
    , m_handedOn(draft)
    , m_handlers(std::move(handlers))
    , m_timers(timers) {}

void PreferencesForm::editPollInterval(int minutes) {
    m_draft.pollIntervalSeconds = AppSettings::clampedPollInterval(minutes * AppSettings::pollIntervalStepSeconds);
    m_pause = m_timers.schedule(intervalPause, [this] { handOn(); });
}

void PreferencesForm::handOn() {
    m_pause.reset();
    if (m_isDetached || m_draft == m_handedOn) {
        return;
    }
    m_handedOn = m_draft;
    // A copy: the handler may take the launch switch back before it returns.
    m_handlers.autoSave(PreferencesDraft(m_draft));
}

void PreferencesForm::save(const AccountFields& fields) {
    if (m_connection.isConnecting || m_isDetached) {
        return;
    }
    m_pause.reset();
    m_draft.baseURL = fields.baseURL;
    m_draft.account = fields.account;
    m_draft.password = fields.password;
    m_draft.stationID = fields.stationID;
    m_handedOn = m_draft;
    setAccountNotices({});
    setConnection(
        {.isConnecting = true, .isConnected = m_connection.isConnected, .hasError = false, .errorMessage = {}});
    const auto task = std::make_shared<QCoro::Task<bool>>(m_handlers.save(m_draft));
    startTask("savePreferences", [form = QPointer<PreferencesForm>(this), task] { return awaitSave(form, task); });
}

QCoro::Task<void> PreferencesForm::awaitSave(QPointer<PreferencesForm> form, std::shared_ptr<QCoro::Task<bool>> save) {
    const bool isConnected = co_await std::move(*save);
    if (form) {
        form->saveEnded(isConnected);
    }
}

void PreferencesForm::saveEnded(bool isConnected) {
    // What the owner reported while the save went on is more exact than its outcome.
    ConnectionState ended = m_connection;
    ended.isConnecting = false;
    ended.isConnected = isConnected;
    ended.hasError = ended.hasError || !isConnected;
    setConnection(ended);
}

QString PreferencesForm::stationIDFor(const QString& account) const {
    const bool isSameAccount = trimmed(account).compare(trimmed(m_draft.account), Qt::CaseInsensitive) == 0;
    return isSameAccount ? m_draft.stationID : QString();
}

void PreferencesForm::signOut() {
    if (m_isDetached) {
        return;
    }
    m_draft.password.clear();
    m_handedOn.password.clear();
    setAccountNotices({});
    updateConnection(false, false, {});
    Q_EMIT signedOut();
    m_handlers.signOut();
}

bool PreferencesForm::canSignOut() const {
    return !m_connection.isConnecting &&
           (m_connection.isConnected || m_connection.hasError || !m_draft.password.isEmpty() ||
            m_accountNotices.testFlag(AccountNotice::passwordNotDeleted));
}

void PreferencesForm::updateConnection(bool isConnected, bool hasError, const QString& errorMessage) {
    setConnection({m_connection.isConnecting, isConnected, hasError, hasError ? errorMessage : QString()});
}

void PreferencesForm::setConnection(const ConnectionState& connection) {
    if (m_connection != connection) {
        m_connection = connection;
        Q_EMIT connectionChanged();
    }
}

void PreferencesForm::setNotificationPermission(NotificationPermission permission) {
    m_notificationPermission = permission;
    Q_EMIT notificationPermissionChanged();
}

void PreferencesForm::setAccountNotices(AccountNotices notices) {
    if (std::exchange(m_accountNotices, notices) != notices) {
        Q_EMIT accountNoticesChanged();
    }
}

void PreferencesForm::refuseLaunchAtLogin(const QString& description, bool actualState) {
    m_draft.launchAtLogin = actualState;
    m_handedOn.launchAtLogin = actualState;
    Q_EMIT launchAtLoginRefused(description);
}

void PreferencesForm::detach() {
    m_isDetached = true;
    m_pause.reset();
}

void PreferencesForm::reportClosed() const {
    if (!m_isDetached && m_handlers.closed) {
        m_handlers.closed();
    }
}

} // namespace Varnel
