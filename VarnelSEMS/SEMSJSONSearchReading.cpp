#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>

#include <array>
#include <cmath>
#include <string>
#include <string_view>

// The current power and today's energy.

namespace Varnel {

namespace {
/// In order of priority and normalised, so "current_power" and "currentPower" are one entry.
constexpr std::array<std::string_view, 8> powerKeys = {"pac", "currentpower", "activepower", "outputpower",
                                                       "ppv", "powerac",      "acpower",     "instantpower"};
constexpr std::array<std::string_view, 14> todayEnergyKeys = {
    "etoday",   "eday",        "todayenergy", "todayenergykwh", "todaygeneration", "daygeneration",     "dayenergy",
    "daypower", "dailyenergy", "todayyield",  "dailyyield",     "yieldtoday",      "todaypvgeneration", "todayoutput",
};

struct NumberHit {
    SEMSNumber number;
    std::string_view key;
    const JSON* context = nullptr;
};

std::optional<NumberHit> firstNumberHit(const JSON& root, std::string_view wantedKey) {
    const SEMSJSONMember member =
        firstMember(root, wantedKey, [](const JSON& value) { return coerceToDouble(value).has_value(); });
    if (!member) {
        return std::nullopt;
    }
    return NumberHit{*coerceToDouble(*member.value), wantedKey, member.context};
}

/// A power key without any unit. Installations of the size this is made for stay far below 100 kW, and the service
/// gives kilowatts with the fraction of a small number: so a large number counts in watts, and so does one between
/// 10 and 100 with a fraction.
double kilowattsWithoutUnit(double value, std::string_view key) {
    const bool isFractionOfWatts = value >= 10 && value < 100 && std::trunc(value) != value;
    return isFractionOfWatts || namesWatts(key) || value > 100 ? value / 1000 : value;
}

std::optional<double> kilowatts(const NumberHit& hit, const JSON& root) {
    if (hit.number.carriesUnit) {
        return hit.number.value;
    }
    const QString unit = resolvedPowerUnit(hit.key, *hit.context, root);
    if (unit.isEmpty()) {
        return kilowattsWithoutUnit(hit.number.value, hit.key);
    }
    switch (normalizedPowerUnit(unit)) {
    case PowerUnitKind::kilowatts:
        return hit.number.value;
    case PowerUnitKind::watts:
        return hit.number.value / 1000;
    case PowerUnitKind::energy:
    case PowerUnitKind::unknown:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

double normalizeTodayOutput(const NumberHit& hit) {
    const double value = hit.number.value;
    if (hit.number.carriesUnit) {
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
} // namespace

Result<double> SEMSJSONSearch::extractInstantPowerKW(const JSON& root) {
    for (const std::string_view key : powerKeys) {
        const std::optional<NumberHit> hit = firstNumberHit(root, key);
        if (const std::optional<double> power = hit ? kilowatts(*hit, root) : std::nullopt) {
            return *power;
        }
    }
    return failure(SEMSAPIError::noInstantPower());
}

std::optional<double> SEMSJSONSearch::extractTodayOutputKWh(const JSON& root) {
    for (const std::string_view key : todayEnergyKeys) {
        if (const std::optional<NumberHit> hit = firstNumberHit(root, key)) {
            return normalizeTodayOutput(*hit);
        }
    }
    return std::nullopt;
}

} // namespace Varnel
