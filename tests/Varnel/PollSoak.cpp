#include "PollSoak.h"

namespace Varnel::Testing {

namespace {

using Simulator::Fault;
using Simulator::FaultKind;

// Without the slow ones (delay, drip, silence), which would take their time from the one who waits for the soak.
constexpr FaultKind quickFaults[] = {FaultKind::cut,       FaultKind::close,      FaultKind::status,
                                     FaultKind::redirect,  FaultKind::envelope,   FaultKind::emptyList,
                                     FaultKind::emptyData, FaultKind::wrongShape, FaultKind::notJSON,
                                     FaultKind::html,      FaultKind::tooDeep,    FaultKind::tooLarge};
constexpr int statuses[] = {400, 401, 403, 404, 429, 500, 502, 503};

} // namespace

PollSoak::PollSoak(ControllerBench& bench)
    : m_bench(bench)
    , m_lastGoodKW(bench.controller->values().powerKW.value()) {}

bool PollSoak::run(int polls) {
    for (int i = 0; i < polls; ++i) {
        disturb();
        if (!poll()) {
            return false;
        }
    }
    m_isDisturbed = false;
    return poll();
}

void PollSoak::disturb() {
    m_isDisturbed = m_random() % 10 == 0;
    if (!m_isDisturbed) {
        return;
    }
    ++m_disturbedPolls;
    const std::size_t kind = m_random() % (std::size(quickFaults) + 1);
    if (kind == std::size(quickFaults)) {
        m_bench.simulator.expireSessions();
        m_lastFault = QStringLiteral("expired session");
        return;
    }
    Fault fault;
    fault.kind = quickFaults[kind];
    m_lastFault = rawValue(fault.kind);
    fault.count = m_random() % 2 == 0 ? std::optional<int>(1 + static_cast<int>(m_random() % 3)) : std::nullopt;
    if (fault.kind == FaultKind::status) {
        fault.status = statuses[m_random() % std::size(statuses)];
    }
    fault.text = QStringLiteral("/elsewhere");
    m_bench.simulator.behaviour().faults = {fault};
}

bool PollSoak::poll() {
    const double kilowatts = static_cast<double>(m_random() % 500) / 100;
    m_bench.simulator.behaviour().powerScript = {kilowatts};
    m_bench.simulator.log().clear();
    m_bench.time.forgetScheduledDelays(); // nothing of the harness is to grow with the polls
    const std::size_t waitingTimers = m_bench.time.pendingTimers();
    const auto isBetweenPolls = [&] { return m_bench.time.pendingTimers() == waitingTimers; };
    do { // the timer may also have been the one of midnight
        m_bench.time.advanceToNextTimer();
    } while (isBetweenPolls() && m_bench.requestCount() == 0);
    if (!waitUntil(isBetweenPolls, 60000)) {
        m_problem = QStringLiteral("The poll does not end, after the fault %1.").arg(m_lastFault);
        return false;
    }
    m_bench.simulator.behaviour().faults.clear();
    return isRightlyShown(kilowatts);
}

bool PollSoak::isRightlyShown(double polled) {
    const AppDelegate& controller = *m_bench.controller;
    const std::optional<QString>& error = controller.values().errorMessage;
    m_failedPolls += error ? 1 : 0;
    m_lastGoodKW = error ? m_lastGoodKW : polled;
    const QString title = StatusPresentationBuilder().formatPowerDisplay(m_lastGoodKW);
    const bool isRecorded = error || (!controller.todayOutput().samples().empty() &&
                                      controller.todayOutput().samples().back().kilowatts == polled);
    if (m_bench.title() == title && isRecorded && (m_isDisturbed || !error)) {
        return true;
    }
    m_problem = QStringLiteral("Title \"%1\" instead of \"%2\", error line \"%3\", after the fault %4.")
                    .arg(m_bench.title(), title, error.value_or(QString()), m_lastFault);
    return false;
}

} // namespace Varnel::Testing
