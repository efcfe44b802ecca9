#include "Ratios.h"

#include <VarnelAppSupport/OutputHistoryStore.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/JSON.h>

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

namespace Varnel {
namespace {

const Timestamp now{807962400}; // noon of 2026-08-09 in UTC

/// A day of 288 readings, five minutes apart, with values as the service and the clock give them.
OutputHistorySnapshot dayOf(Timestamp dayStart) {
    OutputHistorySnapshot snapshot{dayStart, QStringLiteral("me@example.org"), QStringLiteral("S1"), {}};
    for (int i = 0; i < 288; ++i) {
        snapshot.samples.push_back({dayStart + Seconds(300.0 * i + 0.123456 * (i % 7)), (i * 37 % 4999) / 1000.0});
    }
    return snapshot;
}

/// A store in a temporary folder that holds the default retention's 30 days.
struct FilledStore {
    FilledStore() {
        for (int day = 29; day >= 0; --day) {
            const Timestamp start = Calendar::startOfDay(Calendar::addingDays(now, -day).value());
            store.saveSnapshot(dayOf(start), now);
        }
    }

    QByteArray content() const {
        QFile file(store.filePath());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    OutputHistoryStore store{folder.path(), QStringLiteral("com.varnel.menubar")};
};

/// The yardstick: a save may cost 1.2 times this, in CPU.
void parseAndDump(benchmark::State& state) {
    const QByteArray content = FilledStore().content();
    for ([[maybe_unused]] auto turn : state) {
        const Result<JSON> parsed = parseJSON(content);
        benchmark::DoNotOptimize(serializedJSON(*parsed));
    }
    state.counters["bytes"] = static_cast<double>(content.size());
}
BENCHMARK(parseAndDump)->Unit(benchmark::kMillisecond);

/// Reading, replacing the day, writing and flushing to the disk.
void save(benchmark::State& state) {
    FilledStore filled;
    const OutputHistorySnapshot today = dayOf(Calendar::startOfDay(now));
    for ([[maybe_unused]] auto turn : state) {
        filled.store.saveSnapshot(today, now);
    }
    state.counters["bytes"] = static_cast<double>(filled.content().size());
}
BENCHMARK(save)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    return Varnel::Bench::runAndTellRatios(argc, argv, {{"save", "parseAndDump"}});
}
