#pragma once

#include <VarnelSEMS/SEMSPowerSeries.h>
#include <VarnelSEMS/SEMSSeriesHint.h>

#include <QString>

namespace Varnel {

/// How likely a series is to be today's power curve; the highest wins. Every term is bounded by a small constant
/// whatever the values, so that no sum can overflow.
int scoreSeries(const SEMSPowerSeries& series, const SEMSSeriesHint& hint);

/// What the name and the unit that stand beside a curve of a day response say: the generation is the one wanted; load,
/// grid and battery have the same shape of reply and the same keys. 0 where neither says anything, and larger than
/// all of `scoreSeries` where one does. Either text may be empty.
int historySeriesQualityScore(const QString& name, const QString& unit);

} // namespace Varnel
