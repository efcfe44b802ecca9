#pragma once

#include <string_view>

namespace Varnel {

/// What the key path of a candidate series says about it, as the words found anywhere along the path. No word
/// contains a ".", so the path itself is never built: each member's name adds to the hint of its parent.
struct SEMSSeriesHint {
    bool hasEnergyOrMoneyWord = false; ///< "kwh", "income" …: no power
    bool hasPowerOrCurveWord = false;  ///< "pac", "line" …: may be a power curve
    bool hasOtherQuantityWord = false; ///< "temp", "weather" …: another curve
    bool hasStrongWord = false;        ///< the words that raise the score most
    bool hasPointsWord = false;        ///< the words that raise it a little
    bool hasKilowattWord = false;
    bool hasWattWord = false;
    bool endsInW = false; ///< of the last name alone

    /// The hint of a member below this path; the case of its name's letters does not matter.
    SEMSSeriesHint member(std::string_view name) const;

    bool mayBePower() const { return !hasEnergyOrMoneyWord && hasPowerOrCurveWord && !hasOtherQuantityWord; }
    bool meansWatts() const { return hasWattWord || endsInW; }
};

} // namespace Varnel
