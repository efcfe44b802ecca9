#include "Ratios.h"

#include <VarnelSEMS/SEMSJSONSearch.h>

#include <QFile>

#include <benchmark/benchmark.h>

#include <cstdlib>

// What a poll costs beside the network: a monitor detail of 24 KB, from its body to the values of the reading. The
// budget is 1.2 times the cost of parsing the same body.

namespace Varnel {
namespace {

QByteArray monitorDetail() {
    QFile file(QStringLiteral(VARNEL_REPLIES_FOLDER "/monitor-detail-two-inverters.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        std::abort();
    }
    return file.readAll();
}

void parsingAlone(benchmark::State& state) {
    const QByteArray body = monitorDetail();
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(parseJSON(body));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(parsingAlone);

void fromBodyToReading(benchmark::State& state, const QByteArray& body) {
    for ([[maybe_unused]] auto iteration : state) {
        const JSON reply = parseJSON(body).value();
        benchmark::DoNotOptimize(SEMSJSONSearch::extractTodayOutputKWh(reply));
        benchmark::DoNotOptimize(SEMSJSONSearch::extractInstantPowerKW(reply));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK_CAPTURE(fromBodyToReading, byDay, monitorDetail());
// A few watts without a unit: whatever the reply says of its units is heard.
BENCHMARK_CAPTURE(fromBodyToReading, atDawn, monitorDetail().replace(R"("pac":2337.0)", R"("pac":87)"));

/// A reply without either value is walked as a whole for every key.
void searchingInVain(benchmark::State& state) {
    QByteArray body = monitorDetail();
    body.replace("pac", "pxc").replace("output_power", "output").replace("day", "dxy").replace("daily", "dxily");
    const JSON reply = parseJSON(body).value();
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(SEMSJSONSearch::extractTodayOutputKWh(reply));
        benchmark::DoNotOptimize(SEMSJSONSearch::extractInstantPowerKW(reply));
    }
}
BENCHMARK(searchingInVain);

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    return Varnel::Bench::runAndTellRatios(
        argc, argv, {{"fromBodyToReading/byDay", "parsingAlone"}, {"fromBodyToReading/atDawn", "parsingAlone"}});
}
