#include <simulator/Sessions.h>

#include <QUuid>

#include <algorithm>

namespace Varnel::Simulator {

IssuedSession Sessions::issue(std::int64_t timestamp, const QString& region) {
    const auto fresh = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces); };
    m_alive.push_back({fresh(), timestamp, fresh().remove(u'-'), region});
    return m_alive.back();
}

bool Sessions::knowsToken(const QString& token) const {
    return std::any_of(m_alive.begin(), m_alive.end(),
                       [&token](const IssuedSession& session) { return session.token == token; });
}

bool Sessions::knows(const IssuedSession& session) const {
    return std::find(m_alive.begin(), m_alive.end(), session) != m_alive.end();
}

void Sessions::expireAll() {
    m_alive.clear();
}

} // namespace Varnel::Simulator
