#include <VarnelStatusMenu/ChartLabels.h>

#include <algorithm>

namespace Varnel {

namespace {

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

} // namespace

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

} // namespace Varnel
