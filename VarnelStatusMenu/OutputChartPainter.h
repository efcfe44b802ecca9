#pragma once

#include <VarnelStatusMenu/ChartLabels.h>
#include <VarnelStatusMenu/CrispLines.h>
#include <VarnelStatusMenu/MenuColors.h>

#include <QPainter>
#include <QPainterPath>

namespace Varnel {

/// Paints one chart once.
class OutputChartPainter {
public:
    /// Keeps references to `painter`, `chart` and `layout`.
    OutputChartPainter(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout, qreal viewHeight,
                       const QPalette& palette);

    void paint(std::optional<std::size_t> inspectedIndex);

private:
    void paintBackground();
    void paintGrid();
    void paintYTicks();
    void paintEmptyText();
    void paintValues(const std::vector<QPointF>& points);
    void paintCurve(const std::vector<QPointF>& points);
    void paintInspector(std::size_t index, QPointF point);
    void paintBubble(const InspectorBubble& bubble);
    void paintXAxisLabels();
    void paintDot(QPointF point);
    void paintText(const PlacedText& text, const QFont& font, const QColor& color);
    void strokeLine(QPointF from, QPointF to, const QPen& pen);

    QPainter& m_painter;
    const StatusMenuChart& m_chart;
    const ChartLayout& m_layout;
    QTransform m_fromChart;
    MenuColors m_colors;
    CrispLines m_crisp;
};

} // namespace Varnel
