#include <VarnelStatusMenu/ChartLayout.h>

#include <VarnelStatusMenu/ChartText.h>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {

constexpr double smallestMaximumKW = 0.1;
constexpr qreal plotInsetX = 12;
constexpr qreal plotInsetY = 8;
constexpr qreal padding = 8; // between the background's edge and the values, and between ticks and values
constexpr qreal bottomGutterHeight = 14;

double topOfScale(const StatusMenuChart& chart) {
    if (chart.yAxisMaxKW) {
        return std::max(smallestMaximumKW, *chart.yAxisMaxKW);
    }
    double largest = smallestMaximumKW;
    for (const double value : chart.values) {
        largest = std::max(largest, value);
    }
    return largest;
}

std::vector<ChartTick> ticks(const StatusMenuChart& chart, double maxValue) {
    if (!chart.yAxisMaxKW) {
        return {};
    }
    return {{1.0, axisTopText(maxValue)}, {0.5, axisText(maxValue * 0.5)}, {0.0, axisText(0)}};
}

qreal leftGutter(const std::vector<ChartTick>& ticks, const TextWidth& axisTextWidth) {
    qreal widest = 0;
    for (const ChartTick& tick : ticks) {
        widest = std::max(widest, axisTextWidth(tick.label));
    }
    return ticks.empty() ? 0 : widest + padding;
}

} // namespace

std::optional<ChartLayout> chartLayout(const StatusMenuChart& chart, QSizeF viewSize, const TextWidth& axisTextWidth) {
    ChartLayout layout;
    layout.plotRect = QRectF(QPointF(0, 0), viewSize).adjusted(plotInsetX, plotInsetY, -plotInsetX, -plotInsetY);
    layout.maxValue = topOfScale(chart);
    layout.yTicks = ticks(chart, layout.maxValue);
    const qreal left = padding + leftGutter(layout.yTicks, axisTextWidth);
    const qreal bottom = padding + (chart.xAxisLabels.isEmpty() ? 0 : bottomGutterHeight);
    layout.chartRect = layout.plotRect.adjusted(left, bottom, -padding, -padding);
    if (layout.chartRect.width() <= 0 || layout.chartRect.height() <= 0) {
        return std::nullopt;
    }
    return layout;
}

std::vector<QPointF> chartPoints(const std::vector<double>& values, const ChartLayout& layout) {
    const QRectF& chart = layout.chartRect;
    const qreal step = chart.width() / static_cast<qreal>(values.size() + 1);
    std::vector<QPointF> points;
    points.reserve(values.size());
    for (const double value : values) {
        const double shown = value > 0 ? std::min(value, layout.maxValue) : 0; // also for what is not a number
        const auto number = static_cast<qreal>(points.size() + 1);
        points.emplace_back(chart.x() + step * number, lowerEdge(chart) + chart.height() * (shown / layout.maxValue));
    }
    return points;
}

std::optional<std::size_t> nearestPointIndex(const std::vector<QPointF>& points, qreal x) {
    const auto nearest = std::min_element(points.begin(), points.end(), [x](QPointF one, QPointF other) {
        return std::abs(one.x() - x) < std::abs(other.x() - x);
    });
    return nearest == points.end() ? std::nullopt : std::optional(static_cast<std::size_t>(nearest - points.begin()));
}

} // namespace Varnel
