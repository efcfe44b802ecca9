#include <simulator/Sessions.h>

#include <QUuid>

#include <algorithm>
#include <map>

namespace Varnel::Simulator {

IssuedSession Sessions::issue(const QDateTime& now, const QString& region) {
    const auto fresh = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces); };
    m_alive.push_back({{fresh(), now.toMSecsSinceEpoch(), fresh().remove(u'-'), region}});
    return m_alive.back().session;
}

template <typename Predicate>
bool Sessions::admitWhere(Predicate isMeant, const SessionLimits& limits, const QDateTime& now) {
    const auto found =
        std::find_if(m_alive.begin(), m_alive.end(), [&isMeant](const Alive& each) { return isMeant(each.session); });
    if (found == m_alive.end()) {
        return false;
    }
    const Seconds age(static_cast<double>(now.toMSecsSinceEpoch() - found->session.timestamp) / 1000);
    if ((limits.lifetime && age >= *limits.lifetime) || (limits.requests && found->requests >= *limits.requests)) {
        m_alive.erase(found);
        return false;
    }
    ++found->requests;
    return true;
}

bool Sessions::admitToken(const QString& token, const SessionLimits& limits, const QDateTime& now) {
    return admitWhere([&token](const IssuedSession& each) { return each.token == token; }, limits, now);
}

bool Sessions::admit(const IssuedSession& session, const SessionLimits& limits, const QDateTime& now) {
    return admitWhere([&session](const IssuedSession& each) { return each == session; }, limits, now);
}

void Sessions::expireAll() {
    m_alive.clear();
}

int SignInHistory::count(Family family, SignInAttempt::Outcome outcome) const {
    const auto isMeant = [&](const SignInAttempt& each) { return each.family == family && each.outcome == outcome; };
    return static_cast<int>(std::count_if(m_attempts.begin(), m_attempts.end(), isMeant));
}

std::vector<SignInAttempt> SignInHistory::repeatedAfterRejection() const {
    std::map<std::pair<QString, QString>, QDateTime> rejected; // when first, by account and password
    std::vector<SignInAttempt> repeated;
    for (const SignInAttempt& attempt : m_attempts) {
        const std::pair credentials(attempt.account, attempt.password);
        if (const auto found = rejected.find(credentials); found != rejected.end() && found->second < attempt.when) {
            repeated.push_back(attempt);
        }
        if (attempt.outcome == SignInAttempt::Outcome::rejected) {
            rejected.try_emplace(credentials, attempt.when);
        } else if (attempt.outcome == SignInAttempt::Outcome::accepted) {
            rejected.erase(credentials);
        }
    }
    return repeated;
}

} // namespace Varnel::Simulator
