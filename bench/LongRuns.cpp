// Days and weeks of the real controller and client against the simulator, by hand-turned time: a day of each kind of
// station, which must be shown to the watt, and a week of each way in which a session can end, every forty minutes,
// which nobody may see. `long-runs DAYS` takes another number of days for the second. The exit status tells whether all
// held.

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
    const bool hasEnded = run.playUntil(bench.time.now() + Seconds(days * 86400));
    const LongRun::Tally& tally = run.tally();
    return print(name, tally,
                 hasEnded && tally.errorLines == 0 && tally.wrongTitles == 0 && tally.signIns == expectedSignIns);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int days = argc > 1 ? std::atoi(argv[1]) : 7;
    bool isRight = true;
    for (const StationScenario& scenario : stationScenarios()) {
        isRight = play(scenario, QString::fromLatin1(scenario.name), 1, 1) && isRight;
    }
    constexpr int sessionsADay = 36; // of forty minutes
    for (const ExpiryScenario& scenario : expiryScenarios()) {
        isRight = play(scenario, scenario.name(), days, 1 + days * sessionsADay) && isRight;
    }
    return isRight ? 0 : 1;
}
