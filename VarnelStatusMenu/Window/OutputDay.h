#pragma once

#include <VarnelShared/Timestamp.h>

#include <QDate>
#include <QString>

#include <optional>
#include <vector>

namespace Varnel {

/// The power at one instant.
struct OutputPoint {
    Timestamp at;
    double kilowatts = 0;
    bool operator==(const OutputPoint&) const = default;
};

/// Points in time order.
using OutputCurve = std::vector<OutputPoint>;

/// The readings of one local day.
struct OutputDay {
    QDate date;
    OutputCurve readings;
    bool operator==(const OutputDay&) const = default;
};

/// The longest distance of two readings that are polled one after the other.
constexpr Seconds longestPollInterval{3600};

/// The points in time order, those left out that cannot be drawn: at no instant of the calendar, no finite number, or
/// beyond what any house produces (a million kilowatts). A negative power is 0; of points at one instant the last
/// given counts.
OutputCurve drawable(OutputCurve points);

/// The days of a history, oldest first. A reading belongs to the local day that it has in the system's zone of this
/// moment, whichever day it was stored under; a day without readings is not there.
std::vector<OutputDay> outputDays(OutputCurve readings);

/// The longest distance over which two readings of the curve belong together: two intervals, either of the present
/// setting or of the day's own, which may have been another.
Seconds longestStep(const OutputCurve& readings, Seconds interval);

/// The curve in pieces without a gap. Nothing comes of an empty curve, and a lone point is a piece.
std::vector<OutputCurve> pieces(const OutputCurve& curve, Seconds longest);

/// The day as it is drawn.
struct DrawnDay {
    std::vector<OutputCurve> measured;
    std::vector<OutputCurve> filled; ///< from the service's curve; a piece begins and ends at the readings it joins
    bool operator==(const DrawnDay&) const = default;
};

/// The readings, and in their gaps between `from` and `to` what the service's curve has there. Its zeros before the
/// first output are left out but for the last.
DrawnDay drawnDay(const OutputCurve& readings, const OutputCurve& ofService, Seconds interval, Timestamp from,
                  Timestamp to);

/// The area below the pieces in kWh: what lies in gaps is not in it.
double energyKWh(const std::vector<OutputCurve>& curves);

/// The highest point, the earliest of several; none without points.
std::optional<OutputPoint> peakOf(const DrawnDay& day);

/// The drawn day as CSV in time order: a line "time,kW,source", then one per point with the time in ISO 8601 with its
/// offset from UTC, the power with a decimal point whatever the locale, and "measured" or "service".
QString csvText(const DrawnDay& day);

} // namespace Varnel
