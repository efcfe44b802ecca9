#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>

#include <functional>
#include <optional>
#include <vector>

namespace Varnel {

// Chart coordinates: the origin is the lower left corner of the view and y grows upwards, as values do. The lower edge
// of a rectangle is thus its y(). One point is one logical pixel.

inline qreal lowerEdge(const QRectF& rect) {
    return rect.y();
}
inline qreal upperEdge(const QRectF& rect) {
    return rect.y() + rect.height();
}

/// Turns chart coordinates into those of a widget and back: it is its own inverse.
inline QTransform turnedOver(qreal viewHeight) {
    return {1, 0, 0, -1, 0, viewHeight};
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

/// None when nothing of the view is left for values.
std::optional<ChartLayout> chartLayout(const StatusMenuChart& chart, QSizeF viewSize, const TextWidth& axisTextWidth);

/// One point per value, evenly spread so that none touches the left or right edge and a lone one stands in the middle.
/// Values below zero and above the maximum are drawn at the edge.
std::vector<QPointF> chartPoints(const std::vector<double>& values, const ChartLayout& layout);

/// The point nearest to `x`, the earlier one of two equally near; none without points.
std::optional<std::size_t> nearestPointIndex(const std::vector<QPointF>& points, qreal x);

} // namespace Varnel
