#include <Varnel/AppDelegate.h>

#include <Varnel/AppErrorMapper.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

QString AppDelegate::trimmedAccount() const {
    return trimmed(m_settings.account);
}

QString AppDelegate::keychainAccount() const {
    return QStringLiteral("password.") + trimmedAccount().toLower();
}

std::optional<QString> AppDelegate::trimmedStationID() const {
    const QString stationID = trimmed(m_settings.stationID);
    return stationID.isEmpty() ? std::nullopt : std::optional(stationID);
}

std::optional<QString> AppDelegate::storedPassword() {
    const Result<std::optional<QString>> secret = m_keychain.readSecret(keychainAccount());
    const QString password = secret ? trimmed(secret->value_or(QString())) : QString();
    return password.isEmpty() ? std::nullopt : std::optional(password);
}

void AppDelegate::storePassword(const QString& password) {
    if (storedPassword() == password) {
        return; // a save deletes first: a keychain that then refuses the new item would lose what it has
    }
    // A keychain that cannot keep it costs a question at the next start, not this connection.
    if (const Result<void> saved = m_keychain.saveSecret(password, keychainAccount()); !saved) {
        qCWarning(lcApp, "The password could not be stored: %s", qUtf8Printable(saved.error().localizedDescription()));
    }
}

QCoro::Task<void> AppDelegate::authenticateAndStartPolling(QString password) {
    const QString account = trimmedAccount();
    if (account.isEmpty()) {
        rejectSignIn(QStringLiteral("SEMS account is required."));
        return completedTask();
    }
    const QUrl baseURL(trimmed(m_settings.baseURL), QUrl::StrictMode);
    if (!baseURL.isValid() || baseURL.scheme().isEmpty()) {
        rejectSignIn(QStringLiteral("Invalid SEMS base URL."));
        return completedTask();
    }
    return signIn(std::make_shared<SEMSAPIClient>(baseURL, m_platform.http, m_platform.clock, m_platform.endpoints),
                  account, std::move(password));
}

QCoro::Task<void> AppDelegate::signIn(Client client, QString account, QString password) {
    const auto self = shared_from_this();
    const int attempt = ++m_latestSignIn;
    m_isSigningIn = true;
    m_bootstrapAgain = false;
    m_isSignedOutByUser = false;
    Result<SEMSSession> session = co_await client->signIn(account, password);
    if (!isCurrentSignIn(attempt, account)) {
        co_return;
    }
    if (!session) {
        failSignIn(session.error());
        co_return;
    }
    dropPollingService(); // its readings belong to the connection that this one replaces
    m_apiClient = client;
    m_semsSession = *session;
    storePassword(password);
    m_cachedPassword = std::move(password);
    const Result<void> settled = co_await settleStationAndSize(client, *session);
    if (!isCurrentSignIn(attempt, account)) {
        co_return;
    }
    m_isSigningIn = false;
    if (m_apiClient != client) {
        co_return; // signed out meanwhile
    }
    if (!settled) {
        failSignIn(settled.error());
        co_return;
    }
    qCInfo(lcApp, "Signed in");
    m_bootstrapAgain = false;
    m_lastErrorMessage.reset();
    startPolling();
    updateStatusBar();
    co_await refreshNow();
}

bool AppDelegate::isCurrentSignIn(int attempt, const QString& account) {
    const bool isNewest = attempt == m_latestSignIn;
    const bool isWanted = account == trimmedAccount() && !m_isTerminated;
    m_isSigningIn = m_isSigningIn && (!isNewest || isWanted);
    return isNewest && isWanted;
}

void AppDelegate::rejectSignIn(const QString& message) {
    m_lastErrorMessage = message;
    updateStatusBar();
}

void AppDelegate::failSignIn(const Error& error) {
    qCCritical(lcApp, "Sign in failed: %s", qUtf8Printable(logText(error)));
    m_isSigningIn = false;
    dropConnection();
    m_lastErrorMessage = AppErrorMapper::userFacingMessage(error, AppErrorContext::signIn);
    updateStatusBar();
    if (std::exchange(m_bootstrapAgain, false)) {
        startBootstrapTask(BootstrapMode::silent);
    }
}

QCoro::Task<Result<void>> AppDelegate::settleStationAndSize(Client client, SEMSSession session) {
    const auto self = shared_from_this();
    const int save = m_latestSave;
    if (!trimmedStationID()) {
        const Result<PowerStation> station = co_await client->discoverDefaultPowerStation(session);
        if (!station) {
            co_return failure(station.error());
        }
        if (m_apiClient != client || m_isTerminated) {
            co_return Result<void>();
        }
        if (save == m_latestSave) { // else the user has saved a station, or another server, meanwhile
            adoptStation(station->id);
            m_settingsStore.save(m_settings);
        }
    }
    const Result<std::optional<double>> size = co_await client->fetchSystemSizeKW(session, trimmedStationID());
    if (m_apiClient != client || m_isTerminated) {
        co_return Result<void>();
    }
    if (!size) {
        qCCritical(lcApp, "System size fetch failed: %s", qUtf8Printable(logText(size.error())));
    }
    m_systemSizeKW = size.value_or(std::nullopt);
    co_return Result<void>();
}

QCoro::Task<void> AppDelegate::refreshSystemSizeIfPossible() {
    const auto self = shared_from_this();
    const Client client = m_apiClient;
    if (!client || !m_semsSession) {
        co_return;
    }
    const std::optional<QString> stationID = trimmedStationID();
    const Result<std::optional<double>> size = co_await client->fetchSystemSizeKW(*m_semsSession, stationID);
    if (m_apiClient != client || trimmedStationID() != stationID || m_isTerminated) {
        co_return;
    }
    if (!size) {
        qCCritical(lcApp, "System size refresh failed: %s", qUtf8Printable(logText(size.error())));
        co_return;
    }
    m_systemSizeKW = *size;
    updateStatusBar();
}

void AppDelegate::adoptStation(const QString& stationID) {
    m_settings.stationID = stationID;
    restoreOutputHistoryIfAvailable();
}

void AppDelegate::signOut(bool clearStoredPassword) {
    m_isSignedOutByUser = true;
    forgetAccount();
    m_lastErrorMessage.reset();
    if (clearStoredPassword && !trimmedAccount().isEmpty()) {
        if (const Result<void> deleted = m_keychain.deleteSecret(keychainAccount()); !deleted) {
            qCWarning(lcApp, "The password could not be deleted: %s",
                      qUtf8Printable(deleted.error().localizedDescription()));
        }
    }
    qCInfo(lcApp, "Signed out");
    updateStatusBar();
}

void AppDelegate::dropPollingService() {
    if (m_pollingService) {
        m_pollingService->stop();
        m_pollingService.reset();
    }
}

void AppDelegate::dropConnection() {
    dropPollingService();
    m_apiClient.reset();
    m_semsSession.reset();
}

void AppDelegate::forgetAccount() {
    dropConnection();
    m_platform.http.reset();
    m_cachedPassword.reset();
    forgetReadings();
    m_outputHistoryStore.clear();
}

void AppDelegate::forgetReadings() {
    m_productionNotificationEvaluator.reset();
    m_latestPowerKW.reset();
    m_latestTodayOutputKWh.reset();
    m_systemSizeKW.reset();
    m_lastUpdatedAt.reset();
    m_todayOutputSamples.clear();
}

} // namespace Varnel
