#pragma once

#include <VarnelStatusMenu/Window/OutputDay.h>

namespace Varnel {

// What the output window says of a day, in the user's own language and formats.

/// "Saturday, 21 November 2026", with "Today" before it where it is.
QString dateText(QDate date, bool isToday);

/// "Peak: 3.42 kW at 13:05"; without points what the day has none of.
QString peakText(const DrawnDay& day);

/// "Energy: 12.30 kWh" by the service's own count, else the area under the drawn curve, said to be that.
QString energyText(const DrawnDay& day, std::optional<double> countedKWh);

/// The whole day in words, for who cannot see the chart.
QString dayDescription(const DrawnDay& day, std::optional<double> countedKWh);

} // namespace Varnel
