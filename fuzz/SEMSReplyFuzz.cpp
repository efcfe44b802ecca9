#include <VarnelSEMS/SEMSJSONSearch.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace Varnel;

// Whatever the service answers, the search comes back: without a crash, with finite powers and a clamped series.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Result<JSON> reply = parseJSON(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!reply) {
        return 0;
    }
    const auto require = [](bool holds) {
        if (!holds) {
            std::abort();
        }
    };
    const Result<double> power = SEMSJSONSearch::extractInstantPowerKW(*reply);
    require(!power || std::isfinite(*power));
    SEMSJSONSearch::extractDayOutputKWh(*reply, QDate(2025, 6, 21));
    if (const auto series = SEMSJSONSearch::extractTodayPowerSeriesKW(*reply)) {
        require(series->size() >= 2);
        for (const double value : *series) {
            require(std::isfinite(value) && value >= 0);
        }
    }
    for (const PowerStation& station : SEMSJSONSearch::extractStations(*reply)) {
        require(!station.id.isEmpty());
    }
    const QStringList keys{QStringLiteral("data.code"), QStringLiteral("code"), QStringLiteral("pac")};
    SEMSJSONSearch::firstString(*reply, keys);
    SEMSJSONSearch::firstInt(*reply, keys);
    SEMSJSONSearch::firstBool(*reply, keys);
    SEMSJSONSearch::firstDictionary(*reply, keys);
    return 0;
}
