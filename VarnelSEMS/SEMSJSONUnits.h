#pragma once

#include <VarnelShared/JSON.h>

#include <QString>

#include <initializer_list>
#include <optional>
#include <string_view>

namespace Varnel {

/// What the unit of a supposed power turned out to be.
enum class PowerUnitKind {
    kilowatts,
    watts,
    energy,  ///< so the number is no power
    unknown, ///< some other unit, so the number is no power either
};

/// What a unit text of the service means for a power, spaces and "_" aside. "MW" counts as watts: the service writes
/// it that way.
PowerUnitKind normalizedPowerUnit(const QString& unit);

/// A power of that unit in kW; none when the unit is none of a power.
std::optional<double> kilowattsIn(const QString& unit, double value);

/// The text (or number) of the first key that leads to one anywhere in the tree, which may be an empty text; empty
/// when none does.
QString unitText(const JSON& tree, std::initializer_list<std::string_view> normalizedKeys);

/// The unit of a power found under the key: looked for in the object that held it, then anywhere in the reply, where
/// a bare "unit" says nothing. Empty when there is none.
QString resolvedPowerUnit(std::string_view normalizedKey, const JSON& context, const JSON& root);

} // namespace Varnel
