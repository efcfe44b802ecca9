#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSAPIClient.h>
#include <VarnelSEMS/SEMSEndpoints.h>

namespace Varnel {

/// The connection to the service: account, password, client and session, and the attempts to make one. The one place
/// that says, after a wait, whether what was waited for still counts.
///
/// An attempt is a value that the newest one outdates: whoever asks for a connection begins one and asks `isCurrent`
/// after each wait. What a made connection is asked for belongs to its client, until that one is replaced or dropped.
///
/// Its tasks must be awaited by what keeps it alive.
class Connection {
public:
    enum class Attempt : int {};
    using Client = std::shared_ptr<SEMSAPIClient>;

    /// `http` and `clock` must outlive this object and its tasks.
    Connection(HTTPSession& http, const Clock& clock, SEMSEndpoints endpoints);

    /// Outdates every earlier attempt. A connection that exists goes on until the new attempt has made its own.
    Attempt begin();

    /// Whether the attempt goes on: false once a newer one has begun, it has ended, the connection that it made was
    /// dropped, or the program ends.
    bool isCurrent(Attempt attempt) const { return attempt == m_attempt && m_isUnderWay; }

    /// Whether the connection still is the one with this client.
    bool isCurrent(const Client& client) const { return client && client == m_client; }

    /// Whether an attempt goes on.
    bool isUnderWay() const { return m_isUnderWay; }

    /// The attempt is over, whether it has made a connection or not. Does nothing for one that is not current.
    void end(Attempt attempt);

    /// A session is present.
    bool isConnected() const { return m_session.has_value(); }
    const std::optional<SEMSSession>& session() const { return m_session; }
    const Client& client() const { return m_client; }

    /// Signs in; the session takes the place of the one before, unless the attempt is no longer current by then. What
    /// then comes back does not count.
    QCoro::Task<Result<void>> signIn(Attempt attempt, QUrl baseURL, QString account, QString password);

    /// One reading. A session that the service rejects is renewed once. Fails with `invalidConfiguration` where there
    /// is no client or no account and with `authenticationFailed` where there is no password, without a request.
    QCoro::Task<Result<PowerReading>> fetchPowerReading(std::optional<QString> preferredStationID);

    /// Drops client and session. An attempt that has not signed in yet goes on.
    void drop();

    /// `drop`, and forgets the password and what the service has left in the HTTP session.
    void forget();

    /// The program ends: `forget`, and nothing is current any more.
    void close();
    bool isClosed() const { return m_isClosed; }

private:
    QCoro::Task<Result<PowerReading>> fetch(Client client, std::optional<QString> preferredStationID);
    QCoro::Task<Result<SEMSSession>> renewSession(Client client);

    HTTPSession& m_http;
    const Clock& m_clock;
    SEMSEndpoints m_endpoints;
    QString m_account;
    QString m_password;
    Client m_client;
    std::optional<SEMSSession> m_session;
    Attempt m_attempt{0};      ///< the newest
    Attempt m_madeBy{0};       ///< the one that has made the connection
    bool m_isUnderWay = false; ///< the newest attempt goes on
    bool m_isClosed = false;
};

} // namespace Varnel
