#pragma once

namespace Varnel {

/// What the unit of a supposed power turned out to be.
enum class PowerUnitKind {
    kilowatts,
    watts,
    energy,  ///< so the number is no power
    unknown, ///< some other unit, so the number is no power either
};

} // namespace Varnel
