#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QString>

namespace Varnel {

/// "0.1" to one fraction digit, for the middle and the foot of the value axis; in the user's number format.
QString axisText(double kilowatts);

/// The same for the top of the axis: a whole number is written without fraction.
QString axisTopText(double kilowatts);

/// What the inspector says of one value: "3.42 kW", and the point's label after two spaces. Negative values are 0.
QString inspectorText(double kilowatts, const QString& pointLabel);

/// The chart in words, for who cannot see it: the latest value, the peak, each with its time, and how many samples.
QString chartDescription(const StatusMenuChart& chart);

} // namespace Varnel
