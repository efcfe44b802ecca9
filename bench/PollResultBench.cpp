// From a reading to the updated status item, without writing the history: the controller takes a poll's result. The
// budget is 0.15 ms. In a session with a bus and a panel the item is the real one; elsewhere it is only drawn for.

#include "Ratios.h"

#include "../tests/Varnel/ControllerBench.h"

#include <VarnelStatusMenu/Linux/SessionStatusItem.h>

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

/// A reading of no station: such a day is shown, but not stored.
PowerReading readingAt(Timestamp instant, int number) {
    PowerReading reading;
    reading.kilowatts = number % 500 / 100.0;
    reading.todayOutputKWh = 12.3;
    reading.capturedAt = instant;
    return reading;
}

/// A connected controller with a day of `samples` readings.
void fillDay(ControllerBench& bench, int samples) {
    bench.launchConnected();
    bench.item->shownBy = std::make_unique<SessionStatusItem>(QStringLiteral("com.varnel.menubar"), bench.time);
    const Timestamp start = bench.time.now();
    for (int i = 0; i < samples; ++i) {
        bench.time.jumpTo(start + Seconds(15.0 * i));
        bench.controller->handlePollResult(readingAt(bench.time.now(), i * 37));
    }
    waitUntil([] { return false; }, 1500); // until the panel has the item
}

void handlePollResult(benchmark::State& state) {
    ControllerBench bench;
    const int samples = static_cast<int>(state.range(0));
    fillDay(bench, samples);
    int number = 0;
    for ([[maybe_unused]] auto turn : state) {
        bench.controller->handlePollResult(readingAt(bench.time.now(), ++number));
    }
    state.counters["samples"] = static_cast<double>(bench.controller->todayOutput().samples().size());
}
BENCHMARK(handlePollResult)->Arg(1)->Arg(288)->Arg(1440)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return Bench::runAndTellRatios(
        argc, argv, {{"handlePollResult/288", "handlePollResult/1"}, {"handlePollResult/1440", "handlePollResult/1"}});
}
