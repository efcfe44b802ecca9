#pragma once

#include <simulator/ServiceRequest.h>

#include <VarnelShared/Timestamp.h>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel::Simulator {

/// What a sign-in handed out.
struct IssuedSession {
    QString uid;
    std::int64_t timestamp = 0; ///< milliseconds since 1970, 13 digits
    QString token;
    QString region; ///< where it is known; token API sessions are known everywhere

    bool operator==(const IssuedSession&) const = default;
};

/// How long a session is good for.
struct SessionLimits {
    std::optional<Seconds> lifetime;
    std::optional<int> requests;
};

/// The sessions that are alive. A sign-in ends no earlier session of the account.
class Sessions {
public:
    IssuedSession issue(const QDateTime& now, const QString& region);

    /// Whether a call that carries this token, or all of this session, may pass; the session notes that it did.
    bool admitToken(const QString& token, const SessionLimits& limits, const QDateTime& now);
    bool admit(const IssuedSession& session, const SessionLimits& limits, const QDateTime& now);

    void expireAll();

private:
    struct Alive {
        IssuedSession session;
        int requests = 0; ///< that have passed
    };

    template <typename Predicate>
    bool admitWhere(Predicate isMeant, const SessionLimits& limits, const QDateTime& now);

    std::vector<Alive> m_alive;
};

/// One request that carried a password.
struct SignInAttempt {
    enum class Outcome { accepted, rejected, unjudged };

    QDateTime when; ///< by the service's clock
    Family family = Family::token;
    QString account;
    QString password;
    Outcome outcome = Outcome::unjudged; ///< as far as a reply told it that went out undisturbed

    bool operator==(const SignInAttempt&) const = default;
};

/// Every attempt to sign in, in order.
class SignInHistory {
public:
    void note(SignInAttempt attempt) { m_attempts.push_back(std::move(attempt)); }
    void clear() { m_attempts.clear(); }

    const std::vector<SignInAttempt>& attempts() const { return m_attempts; }
    int count(Family family, SignInAttempt::Outcome outcome) const;

    /// The attempts with a password that had been rejected at an earlier time and not been accepted since: at the same
    /// time, the families and variants of one sign-in are tried one after the other.
    std::vector<SignInAttempt> repeatedAfterRejection() const;

private:
    std::vector<SignInAttempt> m_attempts;
};

} // namespace Varnel::Simulator
