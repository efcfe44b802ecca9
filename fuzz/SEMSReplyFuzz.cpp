#include "Fuzz.h"

#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSReply.h>

#include <cmath>

using namespace Varnel;
using Fuzz::require;

// Whatever the service answers, the search comes back: without a crash and with numbers that a house can have.

namespace {
void searchFields(const JSON& reply) {
    const QStringList keys{QStringLiteral("data.code"), QStringLiteral("code"), QStringLiteral("pac")};
    SEMSJSONSearch::firstString(reply, keys);
    SEMSJSONSearch::firstInt(reply, keys);
    SEMSJSONSearch::firstBool(reply, keys);
    SEMSJSONSearch::firstDictionary(reply, keys);
}

void searchNumbers(const JSON& reply) {
    const Result<double> power = SEMSJSONSearch::extractInstantPowerKW(reply);
    require(!power || std::abs(*power) <= 1e6);
    const auto energy = SEMSJSONSearch::extractDayOutputKWh(reply, QDate(2025, 6, 21));
    require(!energy || std::abs(*energy) <= 1e9);
    if (const auto series = SEMSJSONSearch::extractTodayPowerSeriesKW(reply)) {
        require(series->size() >= 2);
        for (const double value : *series) {
            require(value >= 0 && value <= 1e6);
        }
    }
    for (const PowerStation& station : SEMSJSONSearch::extractStations(reply)) {
        require(!station.id.isEmpty() && std::abs(station.capacityKW.value_or(0)) <= 1e6);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Result<JSON> reply = judgedReply({200, {}, Fuzz::bytesOf(data, size)}, {}, {});
    if (reply) {
        searchFields(*reply);
        searchNumbers(*reply);
    } else {
        require(!reply.error().localizedDescription().isEmpty());
    }
    return 0;
}
