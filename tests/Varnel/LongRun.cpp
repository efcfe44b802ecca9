#include "LongRun.h"

#include <cmath>

namespace Varnel::Testing {

using Simulator::Expiry;
using Simulator::ServedFamilies;

LongRun::LongRun(ControllerBench& bench, Start start)
    : m_bench(bench) {
    if (start == Start::connected && !waitUntil([&] { return bench.controller->values().powerKW.has_value(); })) {
        qFatal("The controller does not connect to the simulator");
    }
    settle();
    take(bench.simulator.log().requests());
}

bool LongRun::playUntil(Timestamp end) {
    bool isOver = false;
    const auto marker = m_bench.time.schedule(end - m_bench.time.now(), [&isOver] { isOver = true; });
    while (!isOver) {
        m_bench.simulator.log().clear();
        m_bench.time.forgetScheduledDelays(); // nothing of the harness is to grow with the time
        const std::size_t timers = m_bench.time.pendingTimers();
        m_bench.time.advanceToNextTimer();
        // Every timer's work ends with a new timer in its place.
        if (!waitUntil([&] { return isOver || m_bench.time.pendingTimers() >= timers; }, 60000)) {
            note(QStringLiteral("the work of a timer does not end"));
            return false;
        }
        settle();
        take(m_bench.simulator.log().requests());
    }
    return true;
}

void LongRun::take(const std::vector<Simulator::ServiceRequest>& requests) {
    if (requests.empty()) {
        return;
    }
    const AppDelegate& controller = *m_bench.controller;
    ++m_tally.polls;
    m_tally.requests += static_cast<int>(requests.size());
    const bool isToken = m_bench.simulator.behaviour().families == ServedFamilies::token;
    m_tally.signIns += m_bench.requestsTo(isToken ? "GetToken" : "CrossLogin");
    if (const std::optional<QString>& error = controller.values().errorMessage) {
        ++m_tally.errorLines;
        note(*error);
        return;
    }
    const QString expected = StatusPresentationBuilder().formatPowerDisplay(deliveredKW());
    if (m_bench.title() != expected) {
        ++m_tally.wrongTitles;
        note(QStringLiteral("\"%1\" instead of \"%2\"").arg(m_bench.title(), expected));
    }
}

double LongRun::deliveredKW() {
    const Simulator::Behaviour& behaviour = m_bench.simulator.behaviour();
    const double capacity = behaviour.stations.front().capacityKW;
    const double sun = Simulator::SunCurve::powerKW(capacity, m_bench.time.now().toDateTime().time());
    const double watts = sun > 0 ? std::round(sun * 1000) : behaviour.nightWatts;
    return watts / 1000;
}

void LongRun::note(const QString& problem) {
    if (m_tally.firstProblem.isEmpty()) {
        m_tally.firstProblem = m_bench.time.now().toDateTime().toString(QStringLiteral("ddd hh:mm ")) + problem;
    }
}

QString ExpiryScenario::name() const {
    return QStringLiteral("%1, %2, %3")
        .arg(rawValue(family), rawValue(expiry),
             isServedOnOnePathAlone ? QStringLiteral("on one path alone") : QStringLiteral("on every path"));
}

std::vector<ExpiryScenario> expiryScenarios() {
    std::vector<ExpiryScenario> scenarios;
    for (const ServedFamilies family : {ServedFamilies::token, ServedFamilies::portal}) {
        for (const Expiry expiry : {Expiry::code100002, Expiry::code100001, Expiry::status401}) {
            for (const bool isServedOnOnePathAlone : {false, true}) {
                scenarios.push_back({family, expiry, isServedOnOnePathAlone});
            }
        }
    }
    return scenarios;
}

void prepare(ControllerBench& bench, const ExpiryScenario& scenario) {
    Simulator::Behaviour& behaviour = bench.simulator.behaviour();
    behaviour.powerScript.clear();
    behaviour.families = scenario.family;
    behaviour.expiry = scenario.expiry;
    behaviour.sessionLifetime = Seconds(2400);
    if (scenario.isServedOnOnePathAlone) {
        // The second of each family's paths, so that some attempts fail before it and some after.
        behaviour.servedPaths = {QStringLiteral("*GetToken"), QStringLiteral("*CrossLogin"),
                                 QStringLiteral("*GetUserPowerStation*"), QStringLiteral("*QueryPowerStation*"),
                                 scenario.family == ServedFamilies::token
                                     ? QStringLiteral("*/api/OpenApi/GetPowerStationMonitorDetail/*")
                                     : QStringLiteral("*/v1/PowerStation/GetMonitorDetailByPowerstationId")};
    }
}

std::vector<StationScenario> stationScenarios() {
    return {
        {"one inverter", 1, 5.2, true, 0},
        {"two inverters", 2, 8.4, true, 0},
        {"three inverters, a few watts below zero at night", 3, 9.9, true, -3},
        {"no texts beside the watts", 1, 5.2, false, 0},
        {"60 kW without texts", 3, 60, false, 0},
    };
}

void prepare(ControllerBench& bench, const StationScenario& scenario) {
    Simulator::Behaviour& behaviour = bench.simulator.behaviour();
    behaviour.powerScript.clear();
    behaviour.families = ServedFamilies::portal;
    behaviour.stations.front().inverters = scenario.inverters;
    behaviour.stations.front().capacityKW = scenario.capacityKW;
    behaviour.shape.powerTexts = scenario.powerTexts;
    behaviour.nightWatts = scenario.nightWatts;
}

} // namespace Varnel::Testing
