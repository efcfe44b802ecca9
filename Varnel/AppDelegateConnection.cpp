#include <Varnel/AppDelegate.h>

#include <Varnel/AppErrorMapper.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

std::optional<QString> AppDelegate::trimmedStationID() const {
    const QString stationID = trimmed(m_settings.stationID);
    return stationID.isEmpty() ? std::nullopt : std::optional(stationID);
}

QCoro::Task<void> AppDelegate::bootstrap(BootstrapMode mode) {
    const auto self = shared_from_this();
    if (!m_settings.hasEnabledProductionNotifications()) {
        m_productionNotificationEvaluator.reset();
    }
    const bool isSilent = mode == BootstrapMode::silent;
    if (m_connection.isConnected() || m_connection.isUnderWay() || (isSilent && m_isSignedOutByUser)) {
        co_return; // the user has connected, is about to, or wants no connection
    }
    const Connection::Attempt attempt = m_connection.begin();
    // A repeated attempt asks for nothing: the prompt to unlock belongs to the start and to the preferences.
    if (!isSilent) {
        co_await m_storedPassword.unlock(m_settings.account, KeychainAccess::reading);
    }
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    const std::optional<QString> password = m_storedPassword.read(m_settings.account);
    if (password) {
        co_await connect(attempt, *password);
        co_return;
    }
    m_connection.end(attempt);
    if (!isSilent && !m_preferencesCoordinator.window()) {
        showPreferencesWindow(PreferencesInitialTab::account);
    }
}

QCoro::Task<void> AppDelegate::authenticateAndStartPolling(QString password) {
    return connect(m_connection.begin(), std::move(password));
}

QCoro::Task<void> AppDelegate::connect(Connection::Attempt attempt, QString password) {
    const auto self = shared_from_this();
    m_connectAgain = false;
    const QString account = trimmed(m_settings.account);
    const QUrl baseURL(trimmed(m_settings.baseURL), QUrl::StrictMode);
    if (account.isEmpty()) {
        rejectSignIn(attempt, QStringLiteral("SEMS account is required."));
        co_return;
    }
    if (!baseURL.isValid() || baseURL.scheme().isEmpty()) {
        rejectSignIn(attempt, QStringLiteral("Invalid SEMS base URL."));
        co_return;
    }
    m_isSignedOutByUser = false;
    const Result<void> signedIn = co_await m_connection.signIn(attempt, baseURL, account, password);
    if (!m_connection.isCurrent(attempt)) {
        co_return;
    }
    if (!signedIn) {
        failSignIn(attempt, signedIn.error());
        co_return;
    }
    dropPollingService(); // its readings belong to the connection that this one replaces
    // A keychain that cannot keep it costs a question at the next start, not this connection.
    if (const Result<void> saved = m_storedPassword.save(account, password); !saved) {
        qCWarning(lcApp, "The password could not be stored: %s", qUtf8Printable(saved.error().localizedDescription()));
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
    m_connection.end(attempt);
    m_connectAgain = false;
    m_values.errorMessage.reset();
    startPolling();
    updateStatusBar();
    co_await refreshNow();
}

QCoro::Task<Result<void>> AppDelegate::settleStationAndSize(Connection::Attempt attempt) {
    const auto self = shared_from_this();
    const Client client = m_connection.client();
    const SEMSSession session = m_connection.session().value();
    if (!trimmedStationID()) {
        const Result<PowerStation> station = co_await client->discoverDefaultPowerStation(session);
        if (!station) {
            co_return failure(station.error());
        }
        if (!m_connection.isCurrent(attempt)) {
            co_return Result<void>(); // the user may have saved a station, or another server, meanwhile
        }
        adoptStation(station->id);
    }
    const Result<std::optional<double>> size = co_await client->fetchSystemSizeKW(session, trimmedStationID());
    if (!m_connection.isCurrent(attempt)) {
        co_return Result<void>();
    }
    if (!size) {
        qCCritical(lcApp, "System size fetch failed: %s", qUtf8Printable(logText(size.error())));
    }
    m_values.systemSizeKW = size.value_or(std::nullopt);
    co_return Result<void>();
}

void AppDelegate::rejectSignIn(Connection::Attempt attempt, const QString& message) {
    m_connection.end(attempt);
    m_values.errorMessage = message;
    updateStatusBar();
}

void AppDelegate::failSignIn(Connection::Attempt attempt, const Error& error) {
    qCCritical(lcApp, "Sign in failed: %s", qUtf8Printable(logText(error)));
    dropPollingService();
    m_connection.drop();
    rejectSignIn(attempt, AppErrorMapper::userFacingMessage(error, AppErrorContext::signIn));
    if (std::exchange(m_connectAgain, false)) {
        startTask("bootstrap", ifAlive(weak_from_this(), &AppDelegate::bootstrap, BootstrapMode::silent));
    }
}

void AppDelegate::adoptStation(const QString& stationID) {
    m_settings.stationID = stationID;
    m_settingsStore.save(m_settings);
    m_todayOutput.setOwner(m_settings.account, stationID);
    m_todayOutput.restore();
}

void AppDelegate::signOut(bool clearStoredPassword) {
    m_isSignedOutByUser = true;
    forgetAccount();
    m_values.errorMessage.reset();
    if (clearStoredPassword) {
        if (const Result<void> removed = m_storedPassword.remove(m_settings.account); !removed) {
            qCWarning(lcApp, "The password could not be deleted: %s",
                      qUtf8Printable(removed.error().localizedDescription()));
        }
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
    m_productionNotificationEvaluator.reset();
    m_values = {.errorMessage = m_values.errorMessage};
    m_todayOutput.clear();
}

} // namespace Varnel
