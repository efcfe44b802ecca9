#include <Varnel/Connection.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/URLError.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

namespace {
constexpr Seconds refusalHolds = std::chrono::hours(12);

QCoro::Task<Result<PowerReading>> failedReading(Error error) {
    co_return failure(std::move(error));
}

/// Whether the service judged the password of a sign-in and refused it.
bool isRefusal(const Error& error) {
    const auto* service = error.as<SEMSAPIError>();
    const auto* failed = service ? std::get_if<SEMSAPIError::AllSignInStrategiesFailed>(&service->kind) : nullptr;
    return failed && failed->wasJudged;
}

bool isAuthenticationFailure(const Result<PowerReading>& reading) {
    const auto* error = reading ? nullptr : reading.error().as<SEMSAPIError>();
    return error && error->is<SEMSAPIError::AuthenticationFailed>();
}
} // namespace

Connection::Connection(HTTPSession& http, const Clock& clock, SEMSEndpoints endpoints)
    : m_http(http)
    , m_clock(clock)
    , m_endpoints(std::move(endpoints)) {}

Connection::Attempt Connection::begin(Initiator initiator) {
    m_isUnderWay = !m_isClosed;
    m_isRepeatWanted = false;
    m_initiator = initiator;
    if (initiator == Initiator::user) {
        m_isCancelled = false;
        m_unjudgedFailures = 0;
        m_unjudgedPassword.reset();
    }
    m_attempt = Attempt{static_cast<int>(m_attempt) + 1};
    return m_attempt;
}

void Connection::cancel() {
    if (!std::exchange(m_isUnderWay, false)) {
        return;
    }
    if (m_madeBy == m_attempt) {
        drop(); // its station has not been settled
    }
    // The attempt may not have come to its sign-in: then this is the client of the connection that goes on.
    const Client signingIn = m_signingIn.lock();
    if (signingIn && !isCurrent(signingIn)) {
        signingIn->stop();
    }
    m_unjudgedPassword.reset();
    m_isCancelled = true;
}

void Connection::end(Attempt attempt) {
    m_isUnderWay = m_isUnderWay && attempt != m_attempt;
}

void Connection::succeed(Attempt attempt) {
    end(attempt);
    m_unjudgedFailures = 0;
    m_unjudgedPassword.reset();
}

Connection::Repetition Connection::fail(Attempt attempt, const Error& error) {
    end(attempt);
    drop();
    m_isPasswordRefused = isRefusal(error);
    m_unjudgedFailures = isTransient(error) ? m_unjudgedFailures + 1 : 0;
    if (m_unjudgedFailures == 0) {
        m_unjudgedPassword.reset();
    }
    if (std::exchange(m_isRepeatWanted, false)) {
        return Repetition::atOnce;
    }
    return m_unjudgedFailures > 0 ? Repetition::later : Repetition::none;
}

QCoro::Task<Result<void>> Connection::signIn(Attempt attempt, QUrl baseURL, QString account, QString password) {
    m_unjudgedPassword = password;
    const auto client = std::make_shared<SEMSAPIClient>(baseURL, m_http, m_clock, m_endpoints);
    m_signingIn = client;
    Result<SEMSSession> session = co_await client->signIn(account, password);
    if (!session) {
        co_return failure(session.error());
    }
    if (isCurrent(attempt)) {
        m_client = client;
        m_session = *session;
        m_account = account;
        m_password = password;
        m_madeBy = attempt;
        m_refusal.reset();
        m_isPasswordRefused = false;
    }
    co_return Result<void>();
}

QCoro::Task<Result<PowerReading>> Connection::fetchPowerReading(std::optional<QString> preferredStationID) {
    if (!m_client) {
        return failedReading(SEMSAPIError::invalidConfiguration(
            QCoreApplication::translate("AppDelegate", "API client is not initialized.")));
    }
    if (m_password.isEmpty()) {
        return failedReading(SEMSAPIError::authenticationFailed());
    }
    if (m_account.isEmpty()) {
        return failedReading(
            SEMSAPIError::invalidConfiguration(QCoreApplication::translate("AppDelegate", "SEMS account is empty.")));
    }
    return fetch(m_client, m_session.value(), std::move(preferredStationID));
}

QCoro::Task<Result<PowerReading>> Connection::fetch(Client client, SEMSSession session,
                                                    std::optional<QString> preferredStationID) {
    Result<PowerReading> reading = co_await client->fetchCurrentPower(session, preferredStationID);
    if (isAuthenticationFailure(reading)) {
        const Result<SEMSSession> renewed = co_await renewSession(client);
        if (!renewed) {
            co_return failure(renewed.error());
        }
        reading = co_await client->fetchCurrentPower(*renewed, preferredStationID);
    }
    if (reading) {
        reading->capturedAt = m_clock.now();
    }
    co_return reading;
}

QCoro::Task<Result<SEMSSession>> Connection::renewSession(Client client) {
    if (!isCurrent(client)) {
        // Account and password are another connection's by now, or nobody's.
        co_return failure(URLError{URLError::Code::cancelled, {}});
    }
    const Timestamp now = m_clock.now();
    // A clock that was set back meanwhile ends the wait too: better one try too many than a day without readings.
    if (m_refusal && now >= m_refusal->at && now - m_refusal->at < refusalHolds) {
        co_return failure(m_refusal->error);
    }
    const QString account = m_account;
    const QString password = m_password;
    Result<SEMSSession> session = co_await client->signIn(account, password);
    if (isCurrent(client)) {
        m_refusal.reset();
        if (!session && isRefusal(session.error())) {
            m_refusal = Refusal{session.error(), now};
        }
    }
    // Stored only for the connection that asked: after a sign-out or another sign-in it would revive what is gone.
    if (session && isCurrent(client)) {
        qCInfo(lcApp, "Session renewed");
        m_session = *session;
    }
    co_return session;
}

void Connection::drop() {
    m_isUnderWay = m_isUnderWay && m_madeBy != m_attempt;
    m_client.reset();
    m_session.reset();
}

void Connection::forget() {
    drop();
    m_password.clear();
}

void Connection::signOut() {
    forget();
    m_unjudgedPassword.reset();
    m_isUnderWay = m_isUnderWay && m_initiator == Initiator::user;
}

void Connection::close() {
    signOut();
    m_isUnderWay = false;
    m_isClosed = true;
}

} // namespace Varnel
