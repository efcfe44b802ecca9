#include <VarnelStatusMenu/Chart/ChartGeometry.h>

#include <VarnelStatusMenu/Chart/ChartText.h>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {

constexpr double smallestMaximumKW = 0.1;
constexpr qreal plotInsetX = 12;
constexpr qreal plotInsetY = 8;
constexpr qreal padding = 8; // between the background's edge and the values, and between ticks and values

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

constexpr qreal gutterInset = 8;     // from the background's left edge to the tick labels
constexpr qreal xAxisLabelDrop = 15; // from the chart's lower edge to the foot of its labels
constexpr qreal bubblePaddingX = 7;
constexpr qreal bubblePaddingY = 3;
constexpr qreal bubbleTopGap = 4;
constexpr qreal bubbleSideGap = 2;

qreal tickFoot(double fraction, qreal textHeight, const QRectF& chart) {
    if (fraction == 1.0) {
        return upperEdge(chart) - textHeight + 1;
    }
    if (fraction == 0.0) {
        return lowerEdge(chart) - 1;
    }
    return lowerEdge(chart) + chart.height() * fraction - textHeight * 0.5;
}

constexpr qreal tension = 0.16;

QPointF clampedBetween(QPointF control, QPointF from, QPointF to, const QRectF& chartRect) {
    return {std::clamp(control.x(), from.x(), to.x()),
            std::clamp(control.y(), chartRect.y(), chartRect.y() + chartRect.height())};
}

} // namespace

std::optional<ChartLayout> chartLayout(const StatusMenuChart& chart, QSizeF viewSize, const TextWidth& axisTextWidth,
                                       qreal bottomGutterHeight) {
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

qreal heightInChart(double kilowatts, const ChartLayout& layout) {
    const double shown = kilowatts > 0 ? std::min(kilowatts, layout.maxValue) : 0; // also for what is not a number
    return lowerEdge(layout.chartRect) + layout.chartRect.height() * (shown / layout.maxValue);
}

std::vector<QPointF> chartPoints(const std::vector<double>& values, const ChartLayout& layout) {
    const QRectF& chart = layout.chartRect;
    const qreal step = chart.width() / static_cast<qreal>(values.size() + 1);
    std::vector<QPointF> points;
    points.reserve(values.size());
    for (const double value : values) {
        const auto number = static_cast<qreal>(points.size() + 1);
        points.emplace_back(chart.x() + step * number, heightInChart(value, layout));
    }
    return points;
}

std::optional<std::size_t> nearestPointIndex(const std::vector<QPointF>& points, qreal x) {
    const auto nearest = std::min_element(points.begin(), points.end(), [x](QPointF one, QPointF other) {
        return std::abs(one.x() - x) < std::abs(other.x() - x);
    });
    return nearest == points.end() ? std::nullopt : std::optional(static_cast<std::size_t>(nearest - points.begin()));
}

std::vector<PlacedText> placedYTicks(const ChartLayout& layout, const TextSize& textSize) {
    std::vector<PlacedText> placed;
    for (const ChartTick& tick : layout.yTicks) {
        const QSizeF size = textSize(tick.label);
        const qreal foot = tickFoot(tick.fraction, size.height(), layout.chartRect);
        placed.push_back({tick.label, QRectF(QPointF(layout.plotRect.x() + gutterInset, foot), size)});
    }
    return placed;
}

std::vector<PlacedText> placedXAxisLabels(const QStringList& labels, const QRectF& chartRect,
                                          const TextSize& textSize) {
    std::vector<PlacedText> placed;
    const qreal foot = lowerEdge(chartRect) - xAxisLabelDrop;
    // `anchor` is the share of the chart's width where the label stands and of its own width that lies before that.
    const auto place = [&](const QString& text, qreal anchor) {
        const QSizeF size = textSize(text);
        const qreal left = chartRect.x() + (chartRect.width() - size.width()) * anchor;
        placed.push_back({text, QRectF(QPointF(left, foot), size)});
    };
    if (!labels.isEmpty()) {
        place(labels.first(), 0);
    }
    if (labels.size() >= 2) {
        place(labels[labels.size() / 2], 0.5);
    }
    if (labels.size() >= 3) {
        place(labels.last(), 1);
    }
    return placed;
}

InspectorBubble inspectorBubble(const QString& text, qreal x, const QRectF& chartRect, const TextSize& textSize) {
    const QSizeF inner = textSize(text);
    const QSizeF size(inner.width() + 2 * bubblePaddingX, inner.height() + 2 * bubblePaddingY);
    qreal left = std::max(x - size.width() / 2, chartRect.left() + bubbleSideGap);
    left = std::min(left, chartRect.right() - bubbleSideGap - size.width());
    const QPointF corner(left, upperEdge(chartRect) - size.height() - bubbleTopGap);
    return {QRectF(corner, size), {text, QRectF(corner + QPointF(bubblePaddingX, bubblePaddingY), inner)}};
}

std::vector<CurveSegment> smoothedSegments(const std::vector<QPointF>& points, const QRectF& chartRect) {
    std::vector<CurveSegment> segments;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const QPointF from = points[i];
        const QPointF to = points[i + 1];
        const QPointF before = i == 0 ? from : points[i - 1];
        const QPointF after = i + 2 < points.size() ? points[i + 2] : to;
        segments.push_back({clampedBetween(from + (to - before) * tension, from, to, chartRect),
                            clampedBetween(to - (after - from) * tension, from, to, chartRect), to});
    }
    return segments;
}

} // namespace Varnel
