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

ConnectionState PreferencesForm::connection() const {
    ConnectionState connection = m_told;
    if (m_isSaving) {
        connection.connecting = ConnectionState::Connecting::forUser;
    }
    return connection;
}

void PreferencesForm::save(const AccountFields& fields) {
    if (isUserWaiting() || m_isDetached) {
        return;
    }
    m_pause.reset();
    m_draft.baseURL = fields.baseURL;
    m_draft.account = fields.account;
    m_draft.password = fields.password;
    m_draft.stationID = fields.stationID;
    m_handedOn = m_draft;
    setAccountNotices({});
    ConnectionState before;
    before.isConnected = m_told.isConnected;
    setConnection(before, true);
    ++m_save;
    const auto task = std::make_shared<QCoro::Task<bool>>(m_handlers.save(m_draft));
    startTask("savePreferences",
              [form = QPointer<PreferencesForm>(this), save = m_save, task] { return awaitSave(form, save, task); });
}

QCoro::Task<void> PreferencesForm::awaitSave(QPointer<PreferencesForm> form, int save,
                                             std::shared_ptr<QCoro::Task<bool>> task) {
    const bool isConnected = co_await std::move(*task);
    if (form && form->m_isSaving && form->m_save == save) {
        form->saveEnded(isConnected);
    }
}

void PreferencesForm::saveEnded(bool isConnected) {
    // What the owner reported while the save went on is more exact than its outcome.
    ConnectionState ended = m_told;
    ended.isConnected = isConnected;
    ended.hasError = ended.hasError || !isConnected;
    setConnection(ended, false);
}

void PreferencesForm::cancelSignIn() {
    if (m_isDetached || connection().connecting == ConnectionState::Connecting::no) {
        return;
    }
    ConnectionState cancelled = m_told;
    cancelled.connecting = ConnectionState::Connecting::no;
    setConnection(cancelled, false);
    m_handlers.cancelSignIn();
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
    setConnection({}, m_isSaving);
    Q_EMIT signedOut();
    m_handlers.signOut();
}

bool PreferencesForm::canSignOut() const {
    const ConnectionState shown = connection();
    return shown.connecting == ConnectionState::Connecting::no &&
           (shown.isConnected || shown.hasError || !m_draft.password.isEmpty() ||
            m_accountNotices.testFlag(AccountNotice::passwordNotDeleted));
}

void PreferencesForm::updateConnection(const ConnectionState& connection) {
    setConnection(connection, m_isSaving);
}

void PreferencesForm::setConnection(const ConnectionState& told, bool isSaving) {
    const ConnectionState before = connection();
    m_told = told;
    m_isSaving = isSaving;
    if (connection() != before) {
        Q_EMIT connectionChanged();
    }
}

void PreferencesForm::setNotificationPermission(NotificationPermission permission) {
    m_notificationPermission = permission;
    Q_EMIT notificationPermissionChanged();
}

void PreferencesForm::setDockIconRefused(bool isRefused) {
    if (std::exchange(m_isDockIconRefused, isRefused) != isRefused) {
        Q_EMIT dockIconRefusedChanged();
    }
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
