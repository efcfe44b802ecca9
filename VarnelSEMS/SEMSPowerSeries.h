#pragma once

#include <VarnelSEMS/SEMSSeriesHint.h>
#include <VarnelShared/JSON.h>

#include <cstddef>
#include <vector>

namespace Varnel {

/// A candidate for today's power curve, as extracted.
struct SEMSPowerSeries {
    std::vector<double> kilowatts; ///< in time order, none below 0
    std::size_t negativeCount = 0; ///< the values that were below 0
    std::size_t preDawnCount = 0;  ///< how many of the first values lie before any dawn
};

/// The numbers, the numeric texts and the objects with a value member ("y", "value", "pac", "power") of an array, in
/// the order of their times where all of them have one, in document order otherwise. Anything else, also a null, is
/// a gap and left out.
SEMSPowerSeries numericSeriesFromArray(const JSON& array, const SEMSSeriesHint& hint);

/// As `numericSeriesFromArray`, of the members whose names are times or indexes, in the order of these.
SEMSPowerSeries numericSeriesFromDictionary(const JSON& object, const SEMSSeriesHint& hint);

} // namespace Varnel
