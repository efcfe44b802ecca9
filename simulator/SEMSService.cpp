#include <simulator/SEMSService.h>

#include <algorithm>
#include <cmath>

namespace Varnel::Simulator {

namespace {
constexpr int brokenRequestCode = 100000;
constexpr int otherExpiredSessionCode = 100001;
constexpr int expiredSessionCode = 100002;
constexpr int wrongPasswordCode = 100005;

Reply htmlStatus(int status, const char* reason) {
    return {.status = status,
            .contentType = "text/html",
            .body = QByteArray("<html><body><h2>") + reason + "</h2></body></html>\n"};
}

/// The portal's "Token" header, or null JSON when it is not the object that every portal call must carry.
JSON portalHeader(const ServiceRequest& request) {
    Result<JSON> header = parseJSON(request.header("Token")); // looking up a missing member adds a null
    if (!header || !header->is_object()) {
        return nullptr;
    }
    const bool complete = (*header)["uid"].is_string() && (*header)["timestamp"].is_number_integer() &&
                          (*header)["token"].is_string() && (*header)["client"].is_string() &&
                          (*header)["version"].is_string() && (*header)["language"].is_string();
    return complete ? *header : JSON(nullptr);
}

QString stationIDOf(const Parameters& parameters) {
    return parameters.first(
        {QStringLiteral("powerStationId"), QStringLiteral("powerstation_id"), QStringLiteral("id")});
}

Reply unknownStation() {
    return breakdown("The power station does not exist.");
}

Reply denied() {
    Reply reply = jsonReply(filledReply("denied.json"));
    reply.status = 401;
    return reply;
}

QString bearerToken(const ServiceRequest& request) {
    const QByteArray scheme = QByteArrayLiteral("Bearer ");
    const QByteArray authorization = request.header("Authorization");
    return authorization.startsWith(scheme) ? QString::fromUtf8(authorization.mid(scheme.size())) : QString();
}
} // namespace

SEMSService::SEMSService(const Clock& clock)
    : m_clock(clock) {}

QDateTime SEMSService::now() const {
    return (m_clock.now() + m_behaviour.timeOffset).toDateTime();
}

Reply SEMSService::answer(const ServiceRequest& request) {
    const std::optional<Fault> fault = takeFault(m_behaviour.faults, request, now().time());
    Reply reply = !fault || keepsReply(fault->kind) ? rightReply(request) : Reply();
    if (fault) {
        reply = disturbed(*fault, std::move(reply));
    }
    noteSignIn(request, reply);
    return reply;
}

void SEMSService::noteSignIn(const ServiceRequest& request, const Reply& reply) {
    const std::optional<Route> route = routeOf(request.path());
    const Result<Parameters> parameters = Parameters::of(request);
    if (!route || !isSignIn(route->operation) || !parameters) {
        return;
    }
    using Outcome = SignInAttempt::Outcome;
    const bool isTold = reply.acceptsPassword && reply.transmission.manner == Transmission::Manner::whole;
    const Outcome judgement = reply.acceptsPassword.value_or(false) ? Outcome::accepted : Outcome::rejected;
    m_signIns.note({now(), familyOf(route->operation), parameters->first({QStringLiteral("account")}),
                    parameters->first({QStringLiteral("pwd")}), isTold ? judgement : Outcome::unjudged});
}

Reply SEMSService::rightReply(const ServiceRequest& request) {
    const std::optional<Route> route = routeOf(request.path());
    if (!route || !serves(route->operation) || !servesPath(request)) {
        return htmlStatus(404, "404 - File or directory not found.");
    }
    if (!(request.method == "GET" ? route->acceptsGet : request.method == "POST" && route->acceptsPost)) {
        return htmlStatus(405, "405 - HTTP verb used to access this page is not allowed.");
    }
    const Result<Parameters> parameters = Parameters::of(request);
    if (!parameters) {
        return breakdown(parameters.error().localizedDescription().toStdString());
    }
    if (!isSignIn(route->operation) && !isSignedIn(*route, request)) {
        return refusedSession();
    }
    return dispatch(*route, request, *parameters);
}

Reply SEMSService::dispatch(const Route& route, const ServiceRequest& request, const Parameters& parameters) {
    switch (route.operation) {
    case Operation::tokenSignIn:
        return signInToken(parameters);
    case Operation::portalSignIn:
        return signInPortal(route, request, parameters);
    case Operation::tokenStations:
    case Operation::portalStations:
        return stations(route, parameters);
    case Operation::tokenDetail:
    case Operation::portalDetail:
        return detail(route, parameters);
    case Operation::tokenDay:
    case Operation::portalDay:
        break;
    }
    return day(parameters);
}

bool SEMSService::serves(Operation operation) const {
    switch (m_behaviour.families) {
    case ServedFamilies::both:
        return true;
    case ServedFamilies::token:
        return familyOf(operation) == Family::token;
    case ServedFamilies::portal:
        break;
    }
    return familyOf(operation) == Family::portal;
}

bool SEMSService::servesPath(const ServiceRequest& request) const {
    const QStringList& paths = m_behaviour.servedPaths;
    return paths.isEmpty() ||
           std::any_of(paths.begin(), paths.end(), [&request](const QString& path) { return request.matches(path); });
}

bool SEMSService::isSignedIn(const Route& route, const ServiceRequest& request) {
    const SessionLimits limits{m_behaviour.sessionLifetime, m_behaviour.sessionRequests};
    if (familyOf(route.operation) == Family::token) {
        const QString token = QString::fromUtf8(request.header("token"));
        return bearerToken(request) == token && m_sessions.admitToken(token, limits, now());
    }
    const JSON header = portalHeader(request);
    if (header.is_null()) {
        return false;
    }
    const IssuedSession session{textOf(header["uid"]), header["timestamp"].get<std::int64_t>(), textOf(header["token"]),
                                route.region};
    return m_sessions.admit(session, limits, now());
}

bool SEMSService::knowsAccount(const Parameters& parameters) const {
    return parameters.first({QStringLiteral("account")}) == m_behaviour.account &&
           parameters.first({QStringLiteral("pwd")}) == m_behaviour.password;
}

Reply SEMSService::refusedSession() const {
    const char* message = "The authorization has expired, please log in again.";
    switch (m_behaviour.expiry) {
    case Expiry::code100002:
        return refusal(expiredSessionCode, message);
    case Expiry::text100002:
        return refusal(std::to_string(expiredSessionCode), message);
    case Expiry::code100001:
        return refusal(otherExpiredSessionCode, message);
    case Expiry::status401:
        break;
    }
    return denied();
}

Reply SEMSService::refusedPassword() const {
    Reply reply;
    switch (m_behaviour.rejection) {
    case Rejection::envelope:
        reply = refusal(wrongPasswordCode, "Email or password error.");
        break;
    case Rejection::missingToken:
        reply = success(filledReply("sign-in-without-token.json"));
        break;
    case Rejection::status:
        reply = denied();
        break;
    }
    reply.acceptsPassword = false;
    return reply;
}

Reply SEMSService::acceptedPassword(const char* file, const JSON& values) {
    Reply reply = jsonReply(filledReply(file, values));
    reply.acceptsPassword = true;
    return reply;
}

Reply SEMSService::signInToken(const Parameters& parameters) {
    if (!knowsAccount(parameters)) {
        return refusedPassword();
    }
    const IssuedSession session = m_sessions.issue(now(), {});
    return acceptedPassword("sign-in-token.json", {{"token", session.token.toStdString()}});
}

Reply SEMSService::signInPortal(const Route& route, const ServiceRequest& request, const Parameters& parameters) {
    const JSON header = portalHeader(request);
    if (header.is_null() || !textOf(header["token"]).isEmpty()) {
        return refusal(brokenRequestCode, "The Token header is not the one of a client without a session.");
    }
    if (!knowsAccount(parameters)) {
        return refusedPassword();
    }
    const QString region = m_behaviour.region.isEmpty() ? route.region : m_behaviour.region;
    const IssuedSession session = m_sessions.issue(now(), region);
    JSON values = {
        {"uid", session.uid.toStdString()}, {"timestamp", session.timestamp}, {"token", session.token.toStdString()}};
    // The service does not always name the base; here it does when there is another one than the one that was asked.
    if (!m_behaviour.region.isEmpty()) {
        const QString base = QStringLiteral("http://%1/%2/api/").arg(QString::fromUtf8(request.header("Host")), region);
        values["base"] = base.toStdString();
    }
    return acceptedPassword("sign-in-portal.json", values);
}

Reply SEMSService::stations(const Route& route, const Parameters& parameters) const {
    std::vector<StationReading> readings;
    readings.reserve(m_behaviour.stations.size());
    for (const SimulatedStation& each : m_behaviour.stations) {
        readings.push_back(reading(each));
    }
    const ListPage page{parameters.number(QStringLiteral("page_index"), 1),
                        parameters.number(QStringLiteral("page_size"), 20)};
    return success(stationList(readings, page, familyOf(route.operation), m_behaviour.shape));
}

Reply SEMSService::detail(const Route& route, const Parameters& parameters) {
    const SimulatedStation* found = station(route.stationID.isEmpty() ? stationIDOf(parameters) : route.stationID);
    if (!found) {
        return unknownStation();
    }
    JSON data = monitorDetail(reading(*found), m_behaviour.shape, now());
    if (m_behaviour.powerScript.size() > 1) {
        m_behaviour.powerScript.pop_front();
    }
    return success(std::move(data));
}

Reply SEMSService::day(const Parameters& parameters) const {
    const SimulatedStation* found = station(stationIDOf(parameters));
    const QDate date =
        QDate::fromString(parameters.first({QStringLiteral("date"), QStringLiteral("day")}), Qt::ISODate);
    if (!found || !date.isValid()) {
        return unknownStation();
    }
    const QDateTime present = now();
    const QTime until = date < present.date() ? QTime(23, 59, 59) : present.time();
    if (date > present.date()) {
        return success(JSON::object());
    }
    const SimulatedStation& station = *found;
    const bool isToday = date == present.date();
    const double sunKWh = SunCurve::energyKWh(station.capacityKW, until);
    const DayRecord record{date, until, [this, &station](QTime time) { return powerKW(station, time); },
                           isToday ? m_behaviour.todayOutputKWh.value_or(sunKWh) : sunKWh};
    return success(dayOutput(record, m_behaviour.shape));
}

const SimulatedStation* SEMSService::station(const QString& id) const {
    const auto& all = m_behaviour.stations;
    const auto found =
        std::find_if(all.begin(), all.end(), [&id](const SimulatedStation& each) { return each.id == id; });
    return found == all.end() ? nullptr : &*found;
}

double SEMSService::powerKW(const SimulatedStation& station, QTime time) const {
    const double sunKW = SunCurve::powerKW(station.capacityKW, time);
    return toResolution(sunKW > 0 ? sunKW : m_behaviour.nightWatts / 1000);
}

double SEMSService::toResolution(double kilowatts) const {
    const double steps = 1000 * std::pow(10, m_behaviour.wattDecimals);
    return std::round(kilowatts * steps) / steps;
}

StationReading SEMSService::reading(const SimulatedStation& station) const {
    const QTime time = now().time();
    const auto& script = m_behaviour.powerScript;
    return {station, script.empty() ? powerKW(station, time) : toResolution(script.front()),
            m_behaviour.todayOutputKWh.value_or(SunCurve::energyKWh(station.capacityKW, time)),
            m_behaviour.wattDecimals};
}

} // namespace Varnel::Simulator
