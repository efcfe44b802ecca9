#pragma once

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelShared/JSON.h>
#include <VarnelShared/PowerReading.h>

#include <QString>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace Varnel {

/// In kWh. No house has more: a number beyond it, in either direction, is passed over as no number at all.
inline constexpr double largestEnergyKWh = 1e9;

/// What a unit text of the service means for a power, spaces and "_" aside. "MW" counts as watts: the service writes
/// it that way.
PowerUnitKind normalizedPowerUnit(const QString& unit);

/// A power of that unit in kW; none when the unit is none of a power.
std::optional<double> kilowattsIn(const QString& unit, double value);

/// The text (or number) of the first key that leads to one anywhere in the tree, which may be an empty text; empty
/// when none does.
QString unitText(const JSON& tree, std::initializer_list<std::string_view> normalizedKeys);

/// A number that a search found, with what tells its unit.
struct NumberHit {
    SEMSNumber number;
    std::string_view key;          ///< normalised
    const JSON* context = nullptr; ///< the object that holds it; valid as long as the tree
};

/// The first number under the key; where an inverter of a list holds it, then what each inverter of that list holds at
/// the same place. Empty when there is none.
std::vector<NumberHit> firstNumberHits(const JSON& tree, std::string_view normalizedKey);

/// The hits converted and added, since a station is the sum of its inverters; none when the first is not convertible
/// or beyond the limit. Another one that is either adds nothing, nor does one with which the sum would be.
std::optional<double> sumOf(const std::vector<NumberHit>& hits, double limit,
                            const std::function<std::optional<double>(const NumberHit&)>& converted);

} // namespace Varnel
