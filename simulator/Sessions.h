#pragma once

#include <QString>

#include <cstdint>
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

/// The sessions that are alive. A sign-in ends no earlier session of the account.
class Sessions {
public:
    IssuedSession issue(std::int64_t timestamp, const QString& region);

    bool knowsToken(const QString& token) const;
    bool knows(const IssuedSession& session) const;

    void expireAll();

private:
    std::vector<IssuedSession> m_alive;
};

} // namespace Varnel::Simulator
