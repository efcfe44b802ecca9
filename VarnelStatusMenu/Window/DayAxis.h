#pragma once

#include <VarnelStatusMenu/Chart/ChartGeometry.h>
#include <VarnelStatusMenu/Window/OutputDay.h>

namespace Varnel {

/// The part of a day that is drawn, from the left edge of a chart to its right one.
struct DayAxis {
    Timestamp from;
    Timestamp to;
    bool operator==(const DayAxis&) const = default;
};

/// From the first point of the day to `end`, or to the last point where that is later. None without points. A lone
/// instant gets half an hour on either side.
std::optional<DayAxis> axisOf(const DrawnDay& day, std::optional<Timestamp> end);

/// Where the instant stands in the chart: the same distance for the same time, and none touches an edge.
qreal placeOnAxis(Timestamp at, const DayAxis& axis, const QRectF& chartRect);

/// The full hours (or halves and quarters of a short time) to be labelled, at most `most` of them and as many as that
/// allows: those of the local clock, also on the days on which it is changed.
std::vector<Timestamp> axisMarks(const DayAxis& axis, int most);

/// The labels of the marks below the chart, each in the middle of its mark but within the chart.
std::vector<PlacedText> placedAxisLabels(const DayAxis& axis, const QRectF& chartRect, const TextSize& textSize,
                                         const QString& timeFormat);

} // namespace Varnel
