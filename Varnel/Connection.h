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

    /// Who wants a connection.
    enum class Initiator {
        program, ///< the start, or a repetition: a sign-out ends it
        user,    ///< a save: it goes on beside a sign-out, as the later wish does
    };

    /// What a failed attempt calls for.
    enum class Repetition {
        none,   ///< the service has judged: only the user has it try again, or the network where it refused no password
        later,  ///< nothing judged the password: after a back-off
        atOnce, ///< the network has come while the attempt was under way
    };
    using Client = std::shared_ptr<SEMSAPIClient>;

    /// `http` and `clock` must outlive this object and its tasks.
    Connection(HTTPSession& http, const Clock& clock, SEMSEndpoints endpoints);

    /// Outdates every earlier attempt. A connection that exists goes on until the new attempt has made its own, or has
    /// failed.
    Attempt begin(Initiator initiator);

    /// Whether the attempt goes on: false once a newer one has begun, it has ended, the connection that it made was
    /// dropped, or the program ends.
    bool isCurrent(Attempt attempt) const { return attempt == m_attempt && m_isUnderWay; }

    /// Whether the connection still is the one with this client.
    bool isCurrent(const Client& client) const { return client && client == m_client; }

    /// Whether an attempt goes on.
    bool isUnderWay() const { return m_isUnderWay; }

    /// Who wants the attempt that goes on.
    std::optional<Initiator> initiatorUnderWay() const {
        return m_isUnderWay ? std::optional(m_initiator) : std::nullopt;
    }

    /// The user wants no end of the attempt that goes on, whoever has begun it: it is over, sends nothing more, and
    /// what it has made is dropped. A connection that was there before goes on.
    void cancel();

    /// Whether the user has cancelled the last attempt: until the user wants a connection, none is made.
    bool isCancelled() const { return m_isCancelled; }

    /// The attempt is over without a word of the service. Does nothing for one that is not current.
    void end(Attempt attempt);

    /// The attempt is over and its connection is made.
    void succeed(Attempt attempt);

    /// The attempt has failed with this error: it is over, and so is any connection.
    Repetition fail(Attempt attempt, const Error& error);

    /// The network has come: an attempt that goes on and fails is repeated at once.
    void repeatIfFailing() { m_isRepeatWanted = m_isUnderWay; }

    /// The failed attempts in a row in which nothing judged the password.
    int unjudgedFailures() const { return m_unjudgedFailures; }

    /// The password of the last attempt while nothing has judged it: a repetition needs no keychain.
    const std::optional<QString>& unjudgedPassword() const { return m_unjudgedPassword; }

    /// Whether the service refused the password in the last attempt.
    bool isPasswordRefused() const { return m_isPasswordRefused; }

    /// A session is present.
    bool isConnected() const { return m_session.has_value(); }
    const std::optional<SEMSSession>& session() const { return m_session; }
    const Client& client() const { return m_client; }

    /// That of the connection; empty without one.
    const QString& password() const { return m_password; }

    /// Signs in; the session takes the place of the one before, unless the attempt is no longer current by then. What
    /// then comes back does not count.
    QCoro::Task<Result<void>> signIn(Attempt attempt, QUrl baseURL, QString account, QString password);

    /// One reading. A session that the service rejects is renewed once. Fails with `invalidConfiguration` where there
    /// is no client or no account and with `authenticationFailed` where there is no password, without a request.
    ///
    /// After a renewal in which the service judged the password and refused it, the password is not sent again for
    /// twelve hours: services lock accounts. Readings that need a renewal fail with that refusal meanwhile.
    QCoro::Task<Result<PowerReading>> fetchPowerReading(std::optional<QString> preferredStationID);

    /// Lets a refused password be sent once more: the user asks for it.
    void allowPasswordAgain() { m_refusal.reset(); }

    /// Drops client and session, which come and go together. An attempt that has not signed in yet goes on.
    void drop();

    /// `drop`, and forgets the password.
    void forget();

    /// `forget`, and ends what the program has begun by itself.
    void signOut();

    /// The program ends: `forget`, and nothing is current any more.
    void close();
    bool isClosed() const { return m_isClosed; }

private:
    /// The service's refusal of the password in a renewal.
    struct Refusal {
        Error error;
        Timestamp at;
    };

    QCoro::Task<Result<PowerReading>> fetch(Client client, SEMSSession session,
                                            std::optional<QString> preferredStationID);
    QCoro::Task<Result<SEMSSession>> renewSession(Client client);

    HTTPSession& m_http;
    const Clock& m_clock;
    SEMSEndpoints m_endpoints;
    QString m_account;
    QString m_password;
    Client m_client;
    std::optional<SEMSSession> m_session;
    std::optional<Refusal> m_refusal;
    Attempt m_attempt{0};                       ///< the newest
    Attempt m_madeBy{0};                        ///< the one that has made the connection
    bool m_isUnderWay = false;                  ///< the newest attempt goes on
    Initiator m_initiator = Initiator::program; ///< of the newest attempt
    std::weak_ptr<SEMSAPIClient> m_signingIn;   ///< of the newest attempt that has come so far
    bool m_isCancelled = false;
    bool m_isRepeatWanted = false;
    std::optional<QString> m_unjudgedPassword;
    int m_unjudgedFailures = 0;
    bool m_isPasswordRefused = false;
    bool m_isClosed = false;
};

} // namespace Varnel
