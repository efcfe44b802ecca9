#pragma once

#include <VarnelStatusMenu/ChartLayout.h>

namespace Varnel {

/// A text and the place it is drawn at, in chart coordinates.
struct PlacedText {
    QString text;
    QRectF rect;
    bool operator==(const PlacedText&) const = default;
};

/// The size at which a text is drawn.
using TextSize = std::function<QSizeF(const QString&)>;

/// The labels of the value axis in the left gutter: the top one hangs below its grid line, the others stand around
/// theirs.
std::vector<PlacedText> placedYTicks(const ChartLayout& layout, const TextSize& textSize);

/// The labels below the chart: the first at its left edge, the middle one centred, and the last at its right edge when
/// there are at least three. Of exactly two labels the second is the middle one.
std::vector<PlacedText> placedXAxisLabels(const QStringList& labels, const QRectF& chartRect, const TextSize& textSize);

/// The inspector's bubble and the text in it.
struct InspectorBubble {
    QRectF rect;
    PlacedText text;
};

/// The bubble over the point at `x`: below the top of the chart, and moved sideways where it would leave the chart.
InspectorBubble inspectorBubble(const QString& text, qreal x, const QRectF& chartRect, const TextSize& textSize);

} // namespace Varnel
