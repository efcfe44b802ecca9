#pragma once

#include <VarnelShared/Timestamp.h>

#include <cstdint>
#include <optional>
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

} // namespace Varnel::Simulator
