#pragma once

#include <VarnelShared/JSON.h>

#include <QString>

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Varnel {

/// A day's power curve as the service tells it.
struct SEMSDaySeries {
    std::vector<double> kilowatts; ///< in time order, none below 0
    std::vector<int> minutesOfDay; ///< one per value, where the service names the time of each; else empty

    bool operator==(const SEMSDaySeries&) const = default;
};

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

/// A candidate for today's power curve, as extracted.
struct SEMSPowerSeries : SEMSDaySeries {
    std::size_t negativeCount = 0; ///< the values that were below 0
    std::size_t preDawnCount = 0;  ///< how many of the first values lie before any dawn
};

/// The numbers, the numeric texts and the objects with a value member ("y", "value", "pac", "power") of an array, in
/// the order of their times where all of them have one, in document order otherwise. Anything else, also a null and a
/// power beyond any house, is a gap and left out.
SEMSPowerSeries numericSeriesFromArray(const JSON& array, const SEMSSeriesHint& hint);

/// As `numericSeriesFromArray`, of the members whose names are times or indexes, in the order of these.
SEMSPowerSeries numericSeriesFromDictionary(const JSON& object, const SEMSSeriesHint& hint);

/// Where a sample stands in its series, read from its key or its time text.
struct SEMSSeriesIndex {
    double order = 0;               ///< grows with time within one series
    std::optional<int> minuteOfDay; ///< known when the text names a time of day

    bool operator==(const SEMSSeriesIndex&) const = default;
};

/// Reads "12:05", "06/21/2025 12:05:00" (month first) and "2025-06-21T12:05", with spaces anywhere, and whole numbers
/// with or without a word of time before them ("7", "hour_7", "t0935"); none for any other text.
std::optional<SEMSSeriesIndex> parsedSeriesIndex(const QString& text);

} // namespace Varnel
