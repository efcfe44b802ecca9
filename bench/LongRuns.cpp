// Days and weeks of the real controller and client against the simulator, by hand-turned time: a day of each kind of
// station, which must be shown to the watt, and a week of each way in which a session can end, every forty minutes,
// which nobody may see; before them a week with outages, sleeps and a start without a network. `long-runs DAYS` takes
// another number of days for the second. The exit status tells whether all held.

#include "../tests/Varnel/LongRun.h"

#include <VarnelShared/Calendar.h>

#include <QApplication>

#include <cstdio>
#include <cstdlib>

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

bool print(const QString& name, const LongRun::Tally& tally, bool isRight) {
    std::printf("%-52s %5d polls %6d requests %4d sign-ins %3d error lines %3d wrong titles  %s%s\n", qPrintable(name),
                tally.polls, tally.requests, tally.signIns, tally.errorLines, tally.wrongTitles,
                isRight ? "ok" : "WRONG: ", isRight ? "" : qPrintable(tally.firstProblem));
    std::fflush(stdout);
    return isRight;
}

template <typename Scenario>
bool play(const Scenario& scenario, const QString& name, double days, int expectedSignIns) {
    ControllerBench bench;
    bench.time.jumpTo(Calendar::startOfDay(bench.time.now()));
    prepare(bench, scenario);
    bench.storeAccount();
    bench.launch();
    LongRun run(bench);
    const bool hasEnded = run.playUntil(bench.time.now() + Seconds(days * 86400 + 60));
    const LongRun::Tally& tally = run.tally();
    return print(name, tally,
                 hasEnded && tally.errorLines == 0 && tally.wrongTitles == 0 && tally.signIns == expectedSignIns);
}

/// What happens to the machine and to the service in the week of troubles, by hours from its begin at midnight.
struct Trouble {
    double fromHour;
    double toHour;
    const char* name;
    std::optional<int> status; ///< what the service answers meanwhile; none: nothing gets through
    bool isAsleep;             ///< the machine sleeps; it wakes with a network at the end
    bool isToldAtTheEnd;       ///< the system says that the network is back
};

constexpr Trouble troubles[] = {
    {0, 8, "start without a network", {}, false, true},
    {22, 29, "night outage of the service", 503, false, false},
    {24 + 18, 24 + 23, "dead Wi-Fi in the evening", {}, false, true},
    {48 + 23, 72 + 7.5, "first sleep", {}, true, true},
    {96 + 12, 96 + 12.7, "captive page at noon", 511, false, false},
    {120 + 1, 144 + 9, "second sleep, over a day", {}, true, true},
};

/// Plays until the first reading after the trouble and gives the minutes from its end to that.
double recoveryMinutes(ControllerBench& bench, LongRun& run, const Trouble& trouble, Timestamp week) {
    const Timestamp begin = week + Seconds(trouble.fromHour * 3600);
    const Timestamp end = week + Seconds(trouble.toHour * 3600);
    run.playUntil(begin);
    bench.failRequests(trouble.status ? Simulator::FaultKind::status : Simulator::FaultKind::close, trouble.status);
    bench.systemEvents.isReachable = trouble.status.has_value();
    if (trouble.isAsleep) {
        bench.time.jumpTo(end);
    } else {
        run.playUntil(end);
    }
    bench.simulator.behaviour().faults.clear();
    bench.systemEvents.isReachable = true;
    if (trouble.isToldAtTheEnd) {
        trouble.isAsleep ? bench.systemEvents.resume() : bench.systemEvents.networkReachable();
        waitUntil([&] { return !bench.controller->values().errorMessage && bench.controller->isPolling(); }, 3000);
    }
    while (bench.controller->values().errorMessage || !bench.controller->isPolling()) {
        run.playUntil(bench.time.now() + Seconds(1));
    }
    return (bench.time.now() - end) / Seconds(60);
}

/// The failures before the end of a trouble decide how long the next try is away: 16 intervals at most.
bool playTroubles() {
    ControllerBench bench;
    const Timestamp week = Calendar::startOfDay(bench.time.now());
    bench.time.jumpTo(week);
    bench.simulator.behaviour().powerScript.clear();
    bench.simulator.behaviour().sessionLifetime = Seconds(2400);
    bench.storeAccount();
    bench.failRequests(Simulator::FaultKind::close);
    bench.launch();
    waitUntil([&] { return bench.controller->values().errorMessage.has_value(); });
    LongRun run(bench, LongRun::Start::asItIs);
    bool isRight = true;
    for (const Trouble& trouble : troubles) {
        const double minutes = recoveryMinutes(bench, run, trouble, week);
        const double allowed = trouble.isToldAtTheEnd ? 0 : 16 * 5;
        std::printf("%-30s back after %4.1f minutes (at most %.0f)\n", trouble.name, minutes, allowed);
        isRight = isRight && minutes <= allowed;
    }
    run.playUntil(week + Seconds(7 * 86400.0));
    const LongRun::Tally& tally = run.tally();
    std::printf("the week of troubles: %d polls, %d requests, %d sign-ins, %d wrong titles\n", tally.polls,
                tally.requests, tally.signIns, tally.wrongTitles);
    return isRight && tally.wrongTitles == 0;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int days = argc > 1 ? std::atoi(argv[1]) : 7;
    bool isRight = playTroubles();
    for (const StationScenario& scenario : stationScenarios()) {
        isRight = play(scenario, QString::fromLatin1(scenario.name), 1, 1) && isRight;
    }
    constexpr int sessionsADay = 36; // of forty minutes
    for (const ExpiryScenario& scenario : expiryScenarios()) {
        isRight = play(scenario, scenario.name(), days, 1 + days * sessionsADay) && isRight;
    }
    return isRight ? 0 : 1;
}
