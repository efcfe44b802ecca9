#include <simulator/SEMSSimulator.h>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
constexpr const char* controlPath = "/_control";
constexpr const char* controlLogPath = "/_control/log";

Reply badControl(int status, const QString& message) {
    Reply reply = jsonReply({{"error", message.toStdString()}});
    reply.status = status;
    return reply;
}
} // namespace

SEMSSimulator::SEMSSimulator(const Clock& clock)
    : m_service(clock) {}

Result<void> SEMSSimulator::listen(quint16 port) {
    m_server = std::make_unique<LoopbackHTTPServer>(
        [this](ServiceRequest request, QTcpSocket* socket) { handle(std::move(request), socket); });
    m_port = m_server->listen(port);
    if (m_port == 0) {
        return failure(SimulatorError{QStringLiteral("Port %1 of the loopback address cannot be had.").arg(port)});
    }
    return {};
}

Result<void> SEMSSimulator::followClock() {
    const std::vector<Fault>& faults = m_service.behaviour().faults;
    const QTime time = m_service.now().time();
    const bool refuses = std::any_of(faults.begin(), faults.end(), [time](const Fault& fault) {
        return fault.kind == FaultKind::refuse && fault.holdsAt(time);
    });
    if (refuses) {
        m_server.reset();
    } else if (!m_server && m_port != 0) {
        return listen(m_port);
    }
    return {};
}

QUrl SEMSSimulator::baseURL() const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/api/").arg(m_port));
}

Result<void> SEMSSimulator::change(const JSON& settings) {
    Result<SettingsChange> wanted = changed(m_service.behaviour(), settings, m_service.now());
    if (!wanted) {
        return failure(wanted.error());
    }
    m_service.behaviour() = std::move(wanted->behaviour);
    if (wanted->expireSessions) {
        expireSessions();
    }
    if (wanted->clearLog) {
        m_log.clear();
        signIns().clear();
    }
    return {};
}

void SEMSSimulator::handle(ServiceRequest request, QTcpSocket* socket) {
    if (request.path().startsWith(controlPath)) {
        sendReply(socket, answerControl(request), nullptr);
        return;
    }
    request.received = m_service.now();
    std::shared_ptr<void> inFlight = m_log.noteArrival(request);
    sendReply(socket, m_service.answer(request), std::move(inFlight));
}

Reply SEMSSimulator::answerControl(const ServiceRequest& request) {
    if (request.method == "GET" && request.path() == controlLogPath) {
        return {.contentType = "application/x-ndjson", .body = m_log.jsonLines()};
    }
    if (request.path() != controlPath) {
        return badControl(404, QStringLiteral("There are /_control and /_control/log."));
    }
    if (request.method == "GET") {
        return state();
    }
    const Result<JSON> settings = parseJSON(request.body);
    const Result<void> done = settings ? change(*settings) : failure(settings.error());
    return done ? state() : badControl(400, done.error().localizedDescription());
}

JSON SEMSSimulator::signInCounts(Family family) const {
    using Outcome = SignInAttempt::Outcome;
    const SignInHistory& signIns = m_service.signIns();
    return {{"accepted", signIns.count(family, Outcome::accepted)},
            {"rejected", signIns.count(family, Outcome::rejected)},
            {"unjudged", signIns.count(family, Outcome::unjudged)}};
}

Reply SEMSSimulator::state() const {
    return jsonReply({{"baseURL", baseURL().toString().toStdString()},
                      {"time", m_service.now().toString(Qt::ISODate).toStdString()},
                      {"requests", m_log.requests().size()},
                      {"maximumInFlight", m_log.maximumInFlight()},
                      {"signIns", {{"token", signInCounts(Family::token)}, {"portal", signInCounts(Family::portal)}}},
                      {"settings", settingsOf(m_service.behaviour())}});
}

} // namespace Varnel::Simulator
