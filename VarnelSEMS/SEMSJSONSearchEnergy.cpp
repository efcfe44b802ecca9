#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>

#include <array>
#include <cmath>
#include <string>
#include <string_view>

// Today's energy.

namespace Varnel {

namespace {
/// In order of priority and normalised, so "e_day" and "eDay" are one entry.
constexpr std::array<std::string_view, 14> todayEnergyKeys = {
    "etoday",   "eday",        "todayenergy", "todayenergykwh", "todaygeneration", "daygeneration",     "dayenergy",
    "daypower", "dailyenergy", "todayyield",  "dailyyield",     "yieldtoday",      "todaypvgeneration", "todayoutput",
};

/// None beyond what a house can have.
std::optional<double> plausible(double kilowattHours) {
    return std::abs(kilowattHours) <= largestEnergyKWh ? std::optional(kilowattHours) : std::nullopt;
}

double normalizeTodayOutput(const NumberHit& hit) {
    const double value = hit.number.value;
    if (hit.number.ownUnit) {
        return value;
    }
    const QString unit = unitText(*hit.context, {std::string(hit.key) + "unit", "etodayunit", "edayunit",
                                                 "dayenergyunit", "todayenergyunit", "unit"})
                             .toLower();
    if (unit.contains(QLatin1String("mwh"))) {
        return value * 1000;
    }
    if (unit.contains(QLatin1String("kwh"))) {
        return value;
    }
    if (unit.contains(QLatin1String("wh"))) {
        return value / 1000;
    }
    // "wh" also matches a key that ends in "kwh": without a unit field the service's own such keys hold watt-hours.
    const bool namesWattHours = hit.key.find("wh") != std::string_view::npos;
    return namesWattHours || value > 1000 ? value / 1000 : value;
}

/// An entry of a list of named totals, {"key": "Generation", "unit": "kWh", "value": "10.62"}.
std::optional<double> namedGenerationKWh(const JSON& object) {
    const JSON* name = ownValue(object, "key");
    const JSON* value = ownValue(object, "value");
    const std::optional<SEMSNumber> number = value ? coerceToDouble(*value) : std::nullopt;
    if (!number || !name || !textOf(*name).contains(QLatin1String("generation"), Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    return plausible(normalizeTodayOutput({*number, "value", &object}));
}

/// An entry of a list of days, {"d": "06/21/2025", "p": 16.0, "i": 3.84}, with "p" the day's energy.
std::optional<double> datedOutputKWh(const JSON& object, const QDate& day) {
    const JSON* date = ownValue(object, "d");
    const JSON* value = ownValue(object, "p");
    const std::optional<SEMSNumber> number = value ? coerceToDouble(*value) : std::nullopt;
    const QString text = date ? textOf(*date) : QString();
    const bool isTheDay = text.startsWith(day.toString(QStringLiteral("MM/dd/yyyy"))) ||
                          text.startsWith(day.toString(QStringLiteral("yyyy-MM-dd")));
    if (!number || !isTheDay) {
        return std::nullopt;
    }
    return plausible(normalizeTodayOutput({*number, "p", &object}));
}

/// Outer objects before inner ones, in document order.
std::optional<double> firstDayEntryKWh(const JSON& tree, const QDate& day) {
    if (const std::optional<double> named = namedGenerationKWh(tree)) {
        return named;
    }
    if (const std::optional<double> dated = datedOutputKWh(tree, day)) {
        return dated;
    }
    if (tree.is_structured()) {
        for (const JSON& value : tree) {
            if (const std::optional<double> found = firstDayEntryKWh(value, day)) {
                return found;
            }
        }
    }
    return std::nullopt;
}
} // namespace

std::optional<double> SEMSJSONSearch::extractTodayOutputKWh(const JSON& root) {
    for (const std::string_view key : todayEnergyKeys) {
        if (const std::optional<double> output =
                sumOf(firstNumberHits(root, key), largestEnergyKWh, normalizeTodayOutput)) {
            return output;
        }
    }
    return std::nullopt;
}

std::optional<double> SEMSJSONSearch::extractDayOutputKWh(const JSON& dayResponse, const QDate& day) {
    const std::optional<double> output = extractTodayOutputKWh(dayResponse);
    return output ? output : firstDayEntryKWh(dayResponse, day);
}

} // namespace Varnel
