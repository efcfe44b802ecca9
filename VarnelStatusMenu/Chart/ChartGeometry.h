#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>

#include <functional>
#include <optional>
#include <vector>

namespace Varnel {

// Chart coordinates: the origin is the lower left corner of the view and y grows upwards, as values do. The lower edge
// of a rectangle is thus its y(). One point is one logical pixel. Left is where time begins: where the layout runs from
// right to left, the whole chart is mirrored on its way to the widget.

inline qreal lowerEdge(const QRectF& rect) {
    return rect.y();
}
inline qreal upperEdge(const QRectF& rect) {
    return rect.y() + rect.height();
}

/// Turns chart coordinates into those of a widget and back: it is its own inverse.
inline QTransform turnedOver(QSizeF viewSize, Qt::LayoutDirection direction) {
    const bool isMirrored = direction == Qt::RightToLeft;
    return {isMirrored ? -1.0 : 1.0, 0, 0, -1, isMirrored ? viewSize.width() : 0, viewSize.height()};
}

/// A label of the value axis; `fraction` is its height, 0 at the foot of the chart and 1 at its top.
struct ChartTick {
    double fraction = 0;
    QString label;
    bool operator==(const ChartTick&) const = default;
};

/// Where the chart lies in its view.
struct ChartLayout {
    QRectF plotRect;               ///< the rounded background
    QRectF chartRect;              ///< where values are plotted
    double maxValue = 0;           ///< kW at the top of `chartRect`, at least 0.1
    std::vector<ChartTick> yTicks; ///< from the top down; none when the chart chooses its own scale
};

/// The width of a text in the font of the axis labels.
using TextWidth = std::function<qreal(const QString&)>;

/// The room below the values for the labels of the menu's chart.
constexpr qreal menuBottomGutterHeight = 14;

/// None when nothing of the view is left for values. Larger labels need a higher gutter below.
std::optional<ChartLayout> chartLayout(const StatusMenuChart& chart, QSizeF viewSize, const TextWidth& axisTextWidth,
                                       qreal bottomGutterHeight = menuBottomGutterHeight);

/// How high a power stands in the chart, at its edge where it is below zero or above the maximum.
qreal heightInChart(double kilowatts, const ChartLayout& layout);

/// One point per value, evenly spread so that none touches the left or right edge and a lone one stands in the middle.
/// Values below zero and above the maximum are drawn at the edge.
std::vector<QPointF> chartPoints(const std::vector<double>& values, const ChartLayout& layout);

/// The point nearest to `x`, the earlier one of two equally near; none without points.
std::optional<std::size_t> nearestPointIndex(const std::vector<QPointF>& points, qreal x);

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

/// One cubic Bézier segment from where the one before it ended.
struct CurveSegment {
    QPointF control1;
    QPointF control2;
    QPointF end;
    bool operator==(const CurveSegment&) const = default;
};

/// The segments that join the points smoothly, one per pair of neighbours; none for fewer than two points. Points run
/// from left to right. The curve overshoots neither sideways nor beyond `chartRect`.
std::vector<CurveSegment> smoothedSegments(const std::vector<QPointF>& points, const QRectF& chartRect);

} // namespace Varnel
