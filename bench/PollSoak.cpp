// The real controller and client against the simulator: 10,000 polls with hand-turned time, a tenth of them faulty at
// random, over a history that is full from the start. What the process holds is compared with what it held after the
// first 3,000; `poll-soak POLLS` takes another number. The exit status tells whether all was right. With glibc's caches
// off (docs/benchmarks.md) the heap counts what is held alone.

#include "../tests/Varnel/PollSoak.h"
#include "../tests/Support/ProcessFootprint.h"

#include <VarnelShared/Calendar.h>

#include <QApplication>
#include <QElapsedTimer>

#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

constexpr int warmUpPolls = 3000; ///< until large replies have shaped the heap
constexpr int parts = 4;          ///< after each of which the footprint is told: a leak grows with them
/// A hundredth of what one lost reply body per poll would be.
constexpr long toleratedHeapGrowthKB = 512;
/// The allocator's pages are fewer after the first look than ever again, since that gives back all it can.
constexpr long toleratedResidentGrowthKB = 4096;

/// The thirty days before the clock's, a poll every five minutes.
void fillHistory(ControllerBench& bench) {
    OutputHistoryStore store(bench.dataFolder.path(), QStringLiteral("com.varnel.menubar"));
    for (int day = 30; day > 0; --day) {
        const Timestamp start = Calendar::startOfDay(Calendar::addingDays(bench.time.now(), -day).value());
        OutputHistorySnapshot snapshot{
            start, bench.simulator.behaviour().account, bench.simulator.behaviour().stations.front().id, {}};
        for (int i = 0; i < 288; ++i) {
            snapshot.samples.push_back({start + Seconds(300.0 * i), std::sin(i / 92.0) * 4});
        }
        store.saveSnapshot(snapshot, bench.time.now());
    }
}

void print(const char* when, const ProcessFootprint& footprint) {
    std::printf("%-14s resident %ld KB, heap %ld KB, %d descriptors, %d threads\n", when, footprint.residentKB,
                footprint.heapKB, footprint.descriptors, footprint.threads);
    std::fflush(stdout);
}

bool isBackWhereItWas(const ProcessFootprint& before, const ProcessFootprint& after) {
    return after.descriptors <= before.descriptors && after.threads <= before.threads &&
           after.heapKB - before.heapKB < toleratedHeapGrowthKB &&
           after.residentKB - before.residentKB < toleratedResidentGrowthKB;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int polls = argc > 1 ? std::atoi(argv[1]) : 10000;
    ControllerBench bench;
    fillHistory(bench);
    bench.launchConnected();
    PollSoak soak(bench);
    if (!soak.run(warmUpPolls)) {
        std::printf("%s\n", qPrintable(soak.problem()));
        return 1;
    }
    settle();
    const ProcessFootprint before = processFootprint();
    print("after warm-up:", before);
    QElapsedTimer elapsed;
    elapsed.start();
    ProcessFootprint after;
    for (int part = 0; part < parts; ++part) {
        if (!soak.run(polls / parts)) {
            std::printf("%s\n", qPrintable(soak.problem()));
            return 1;
        }
        settle();
        after = processFootprint();
        print("later:", after);
    }
    std::printf("%d polls in %.0f s; of all %d disturbed, %d failed\n", polls,
                static_cast<double>(elapsed.elapsed()) / 1000, soak.disturbedPolls(), soak.failedPolls());
    std::printf("last value: %s\n", qPrintable(bench.title()));
    return isBackWhereItWas(before, after) ? 0 : 1;
}
