#include <VarnelStatusMenu/Chart/OutputChartPainter.h>

#include <VarnelStatusMenu/Chart/ChartText.h>

#include <QCoreApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <span>
#include <utility>

namespace Varnel {

namespace {

constexpr qreal plotRadius = 6;
constexpr qreal bubbleRadius = 5;
constexpr qreal dotRadius = 3.5;
constexpr qreal curveWidth = 2;
constexpr qreal borrowedCurveWidth = 1.5;

/// A stroke's cost grows faster than its length: a full day is drawn in half the time in pieces, whose round caps meet.
constexpr std::size_t segmentsPerStroke = 48;

/// `on` and `off` are lengths in points; a pen counts them in its own widths.
QPen dashedPen(const QColor& color, qreal width, qreal on, qreal off) {
    QPen pen(color, width, Qt::SolidLine, Qt::FlatCap);
    pen.setDashPattern({on / width, off / width});
    return pen;
}

QPainterPath curvePath(QPointF start, std::span<const CurveSegment> segments) {
    QPainterPath path(start);
    for (const CurveSegment& segment : segments) {
        path.cubicTo(segment.control1, segment.control2, segment.end);
    }
    return path;
}

} // namespace

TextSize textSizeIn(const QFont& font) {
    return [metrics = QFontMetricsF(font)](const QString& text) {
        return QSizeF(metrics.horizontalAdvance(text), metrics.height());
    };
}

ChartFonts ChartFonts::ofMenu() {
    return {MenuFonts::axisLabel(), MenuFonts::emptyChart(), MenuFonts::inspector()};
}

OutputChartPainter::OutputChartPainter(QPainter& painter, const ChartLayout& layout, const QTransform& fromChart,
                                       const QPalette& palette, ChartFonts fonts)
    : m_painter(painter)
    , m_layout(layout)
    , m_fromChart(fromChart)
    , m_colors(MenuColors::of(palette))
    , m_fonts(std::move(fonts))
    , m_crisp(painter) {
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setLayoutDirection(Qt::LayoutDirectionAuto); // "3.42 kW" reads the same in a mirrored layout
}

void OutputChartPainter::paintFrame(std::initializer_list<double> gridFractions) {
    paintBackground();
    paintGrid(gridFractions);
    paintYTicks();
}

void OutputChartPainter::paintBackground() {
    const QRectF rect = m_crisp.rect(m_fromChart.mapRect(m_layout.plotRect), 1);
    m_painter.setPen(QPen(withAlpha(m_colors.separator, 0.4), m_crisp.width(1)));
    m_painter.setBrush(withAlpha(m_colors.controlBackground, 0.35));
    m_painter.drawRoundedRect(rect, plotRadius, plotRadius);
}

void OutputChartPainter::paintGrid(std::initializer_list<double> fractions) {
    const QPen pen = dashedPen(withAlpha(m_colors.separator, 0.35), m_crisp.width(0.5), 4, 6);
    const QRectF& chart = m_layout.chartRect;
    for (const double fraction : fractions) {
        const qreal y = lowerEdge(chart) + chart.height() * fraction;
        strokeLine({chart.left(), y}, {chart.right(), y}, pen);
    }
}

void OutputChartPainter::paintYTicks() {
    for (const PlacedText& tick : placedYTicks(m_layout, textSizeIn(m_fonts.axis))) {
        paintText(tick, m_fonts.axis, m_colors.tertiaryLabel);
    }
}

void OutputChartPainter::paintEmptyText() {
    m_painter.setFont(m_fonts.empty);
    m_painter.setPen(m_colors.secondaryLabel);
    m_painter.drawText(m_fromChart.mapRect(m_layout.plotRect), Qt::AlignCenter,
                       QCoreApplication::translate("StatusMenu", "No data yet"));
}

void OutputChartPainter::paintValues(const std::vector<QPointF>& points) {
    if (points.size() == 1) {
        paintDot(points.front());
        return;
    }
    const std::vector<CurveSegment> segments = smoothedSegments(points, m_layout.chartRect);
    QPainterPath area = curvePath(points.front(), segments);
    area.lineTo(points.back().x(), lowerEdge(m_layout.chartRect));
    area.lineTo(points.front().x(), lowerEdge(m_layout.chartRect));
    area.closeSubpath();
    m_painter.fillPath(m_fromChart.map(area), withAlpha(m_colors.accent, 0.18));
    const QPen pen(m_colors.accent, curveWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    for (std::size_t first = 0; first < segments.size(); first += segmentsPerStroke) {
        const auto part = std::span(segments).subspan(first, std::min(segmentsPerStroke, segments.size() - first));
        m_painter.strokePath(m_fromChart.map(curvePath(points[first], part)), pen);
    }
}

void OutputChartPainter::paintBorrowedValues(const std::vector<QPointF>& points) {
    if (points.size() == 1) {
        paintDot(points.front());
        return;
    }
    const QPainterPath path = curvePath(points.front(), smoothedSegments(points, m_layout.chartRect));
    m_painter.strokePath(m_fromChart.map(path), dashedPen(m_colors.secondaryLabel, borrowedCurveWidth, 2, 4));
}

void OutputChartPainter::paintInspector(QPointF point, const QString& text) {
    const QRectF& chart = m_layout.chartRect;
    strokeLine({point.x(), lowerEdge(chart)}, {point.x(), upperEdge(chart)},
               dashedPen(withAlpha(m_colors.accent, 0.45), m_crisp.width(1), 3, 3));
    paintDot(point);
    paintBubble(inspectorBubble(text, point.x(), chart, textSizeIn(m_fonts.inspector)));
}

void OutputChartPainter::paintBubble(const InspectorBubble& bubble) {
    const QRectF rect = m_crisp.rect(m_fromChart.mapRect(bubble.rect), 1);
    m_painter.setPen(QPen(withAlpha(m_colors.separator, 0.5), m_crisp.width(1)));
    m_painter.setBrush(withAlpha(m_colors.windowBackground, 0.9));
    m_painter.drawRoundedRect(rect, bubbleRadius, bubbleRadius);
    paintText(bubble.text, m_fonts.inspector, m_colors.label);
}

void OutputChartPainter::paintXAxisLabels(const std::vector<PlacedText>& labels) {
    for (const PlacedText& label : labels) {
        paintText(label, m_fonts.axis, m_colors.tertiaryLabel);
    }
}

void OutputChartPainter::paintDot(QPointF point) {
    m_painter.setPen(QPen(m_colors.windowBackground, 1));
    m_painter.setBrush(m_colors.accent);
    m_painter.drawEllipse(m_fromChart.map(point), dotRadius, dotRadius);
}

void OutputChartPainter::paintText(const PlacedText& text, const QFont& font, const QColor& color) {
    const QPointF topLeft = m_fromChart.mapRect(text.rect).topLeft();
    m_painter.setFont(font);
    m_painter.setPen(color);
    m_painter.drawText(topLeft + QPointF(0, QFontMetricsF(font).ascent()), text.text);
}

void OutputChartPainter::strokeLine(QPointF from, QPointF to, const QPen& pen) {
    m_painter.setPen(pen);
    m_painter.drawLine(m_crisp.position(m_fromChart.map(from), pen.widthF()),
                       m_crisp.position(m_fromChart.map(to), pen.widthF()));
}

void paintOutputChart(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout,
                      const QTransform& fromChart, const QPalette& palette, std::optional<std::size_t> inspectedIndex) {
    const ChartFonts fonts = ChartFonts::ofMenu();
    OutputChartPainter chartPainter(painter, layout, fromChart, palette, fonts);
    chartPainter.paintFrame({0.0, 0.5, 1.0});
    if (chart.values.empty()) {
        chartPainter.paintEmptyText();
        return;
    }
    const std::vector<QPointF> points = chartPoints(chart.values, layout);
    chartPainter.paintValues(points);
    if (inspectedIndex && *inspectedIndex < points.size()) {
        const QString label = chart.pointLabels.value(static_cast<qsizetype>(*inspectedIndex));
        chartPainter.paintInspector(points[*inspectedIndex], inspectorText(chart.values[*inspectedIndex], label));
    }
    chartPainter.paintXAxisLabels(placedXAxisLabels(chart.xAxisLabels, layout.chartRect, textSizeIn(fonts.axis)));
}

} // namespace Varnel
