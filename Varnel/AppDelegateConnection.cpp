#include <Varnel/AppDelegate.h>

#include <Varnel/AppErrorMapper.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

QCoro::Task<void> AppDelegate::bootstrap(BootstrapMode mode) {
    const auto self = shared_from_this();
    co_await m_announcements->synchronizeNotificationAuthorizationIfNeeded(false);
    const bool isSilent = mode == BootstrapMode::silent;
    const bool isSignedOut = m_settingsStore.isSignedOut();
    if (m_connection.isConnected() || m_connection.isUnderWay() ||
        (isSilent && (isSignedOut || m_connection.isCancelled() || m_connection.isPasswordRefused()))) {
        co_return; // the user has connected, is about to or wants none, or the service has refused what is stored
    }
    const Connection::Attempt attempt = m_connection.begin(Connection::Initiator::program);
    updateStatusBar();
    if (isSignedOut) {
        m_storedPassword->remove(m_settings.account); // what a keyring that stayed locked, or was gone, has kept
    } else if (!isSilent) {
        // A repeated attempt asks for nothing: the prompt to unlock belongs to the start and to the preferences.
        co_await m_storedPassword->unlock(m_settings.account, KeychainAccess::reading);
    }
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    std::optional<QString> password = m_connection.unjudgedPassword();
    if (!password && !isSignedOut) {
        password = co_await m_storedPassword->readPatiently(m_settings.account);
    }
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    if (password) {
        co_await connect(attempt, *password);
        co_return;
    }
    m_connection.end(attempt);
    if (!isSignedOut && !trimmed(m_settings.account).isEmpty()) {
        // A keyring may come later, or be unlocked for another program.
        m_retryTimer = m_platform.timers.schedule(Seconds(m_settings.pollInterval()),
                                                  ifAlive(weak_from_this(), &AppDelegate::catchUp));
    }
    updateStatusBar();
    if (!isSilent && !m_preferencesCoordinator.window()) {
        showPreferencesWindow(PreferencesInitialTab::account);
    }
}

QCoro::Task<void> AppDelegate::authenticateAndStartPolling(QString password) {
    return connect(m_connection.begin(Connection::Initiator::user), std::move(password));
}

QCoro::Task<void> AppDelegate::connect(Connection::Attempt attempt, QString password) {
    const auto self = shared_from_this();
    m_retryTimer.reset();
    const QString account = trimmed(m_settings.account);
    const QUrl baseURL(trimmed(m_settings.baseURL), QUrl::StrictMode);
    if (account.isEmpty()) {
        rejectSignIn(attempt, {QCoreApplication::translate("AppDelegate", "SEMS account is required."),
                               ConnectionState::WantedField::account, false});
        co_return;
    }
    if (!isWebURL(baseURL)) {
        rejectSignIn(attempt, {QCoreApplication::translate("AppDelegate", "Invalid SEMS base URL."),
                               ConnectionState::WantedField::baseURL, false});
        co_return;
    }
    const Result<void> signedIn = co_await m_connection.signIn(attempt, baseURL, account, password);
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    if (!signedIn) {
        failSignIn(attempt, signedIn.error());
        co_return;
    }
    dropPollingService(); // its readings belong to the connection that this one replaces
    m_preferencesCoordinator.rememberSignOut(false);
    co_await m_storedPassword->save(m_settings.account, password);
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    const Result<void> settled = co_await settleStationAndSize(attempt);
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    if (!settled) {
        failSignIn(attempt, settled.error());
        co_return;
    }
    qCInfo(lcApp, "Signed in");
    m_connection.succeed(attempt);
    m_values.errorMessage.reset();
    startPolling();
    updateStatusBar();
    co_await refreshNow();
}

QCoro::Task<Result<void>> AppDelegate::settleStationAndSize(Connection::Attempt attempt) {
    const auto self = shared_from_this();
    const Client client = m_connection.client();
    const SEMSSession session = m_connection.session().value();
    if (!m_settings.preferredStationID()) {
        const Result<PowerStation> station = co_await client->discoverDefaultPowerStation(session);
        if (!station) {
            co_return failure(station.error());
        }
        if (!m_connection.isCurrent(attempt)) {
            co_return Result<void>(); // the user may have saved a station, or another server, meanwhile
        }
        adoptStation(station->id);
    }
    const Result<std::optional<double>> size =
        co_await client->fetchSystemSizeKW(session, m_settings.preferredStationID());
    if (!m_connection.isCurrent(attempt)) {
        co_return Result<void>();
    }
    if (!size) {
        qCCritical(lcApp, "System size fetch failed: %s", qUtf8Printable(logText(size.error())));
    }
    m_values.systemSizeKW = size.value_or(std::nullopt);
    co_return Result<void>();
}

void AppDelegate::cancelSignIn() {
    if (!m_connection.isUnderWay()) {
        return;
    }
    m_connection.cancel();
    m_values.errorMessage.reset();
    m_retryTimer.reset();
    if (m_pollingService) {
        m_pollingService->repeatIfFailing(); // its error went with the attempt's
    } else if (m_connection.isConnected()) {
        startPolling();
    }
    qCInfo(lcApp, "Sign-in cancelled");
    updateStatusBar();
}

void AppDelegate::rejectSignIn(Connection::Attempt attempt, const PreferencesCoordinator::Explanation& explanation) {
    m_connection.end(attempt);
    m_preferencesCoordinator.explainError(explanation);
    m_values.errorMessage = explanation.errorMessage;
    if (m_connection.isConnected() && !m_pollingService) {
        startPolling(); // this attempt has outdated the one that had signed in and was about to poll
    }
    updateStatusBar();
}

void AppDelegate::failSignIn(Connection::Attempt attempt, const Error& error) {
    qCCritical(lcApp, "Sign in failed: %s", qUtf8Printable(logText(error)));
    dropPollingService();
    const Connection::Repetition repetition = m_connection.fail(attempt, error);
    const auto wanted =
        m_connection.isPasswordRefused() ? ConnectionState::WantedField::password : ConnectionState::WantedField::none;
    rejectSignIn(attempt, {AppErrorMapper::userFacingMessage(error, AppErrorContext::signIn), wanted, true,
                           AppErrorMapper::answers(error)});
    switch (repetition) {
    case Connection::Repetition::none:
        break;
    case Connection::Repetition::atOnce:
        catchUp();
        break;
    case Connection::Repetition::later:
        m_retryTimer = m_platform.timers.schedule(
            PowerPollingService::delayAfterFailures(m_settings.pollInterval(), m_connection.unjudgedFailures(),
                                                    retryAfterOf(error).value_or(std::chrono::seconds(0))),
            ifAlive(weak_from_this(), &AppDelegate::catchUp));
        break;
    }
}

void AppDelegate::adoptStation(const QString& stationID) {
    m_settings.stationID = stationID;
    m_preferencesCoordinator.storeSettings();
    m_todayOutput.setOwner(m_settings.account, stationID);
    m_todayOutput.restore();
}

void AppDelegate::signOut(bool clearStoredPassword) {
    m_preferencesCoordinator.rememberSignOut(true);
    m_retryTimer.reset();
    forgetAccount();
    m_connection.signOut();
    m_values.errorMessage.reset();
    if (clearStoredPassword) {
        m_storedPassword->forget(m_settings.account);
    }
    qCInfo(lcApp, "Signed out");
    updateStatusBar();
}

void AppDelegate::dropPollingService() {
    if (const auto service = std::exchange(m_pollingService, nullptr)) {
        service->stop();
    }
}

void AppDelegate::forgetAccount() {
    dropPollingService();
    m_connection.forget();
    forgetReadings();
    m_todayOutput.forget();
}

void AppDelegate::forgetReadings() {
    m_announcements->reset();
    m_values = {.errorMessage = m_values.errorMessage};
    m_todayOutput.clear();
}

} // namespace Varnel
