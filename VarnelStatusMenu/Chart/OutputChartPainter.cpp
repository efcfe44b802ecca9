#include <VarnelStatusMenu/Chart/OutputChartPainter.h>

#include <VarnelStatusMenu/Chart/ChartText.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <span>

namespace Varnel {

namespace {

constexpr qreal plotRadius = 6;
constexpr qreal bubbleRadius = 5;
constexpr qreal dotRadius = 3.5;
constexpr qreal curveWidth = 2;

/// A stroke's cost grows faster than its length: a full day is drawn in half the time in pieces, whose round caps meet.
constexpr std::size_t segmentsPerStroke = 48;

TextSize sizeIn(const QFont& font) {
    return [metrics = QFontMetricsF(font)](const QString& text) {
        return QSizeF(metrics.horizontalAdvance(text), metrics.height());
    };
}

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

/// Fits thin straight lines to the pixels of the device that is painted on, so that they are sharp at every scale
/// factor. Positions are those of the painter, in logical pixels.
class CrispLines {
public:
    explicit CrispLines(const QPainter& painter);

    /// The width in whole device pixels, rounded down, but at least one.
    qreal width(qreal width) const;

    /// The position nearest to `position` where the edges of a line of `width` fall between device pixels.
    QPointF position(QPointF position, qreal width) const;
    QRectF rect(const QRectF& rect, qreal width) const;

private:
    qreal aligned(qreal devicePosition, qreal width) const;

    QTransform m_toDevice;
};

CrispLines::CrispLines(const QPainter& painter)
    : m_toDevice(painter.deviceTransform()) {}

qreal CrispLines::width(qreal width) const {
    const qreal scale = m_toDevice.m11();
    return std::max(1.0, std::floor(width * scale)) / scale;
}

QPointF CrispLines::position(QPointF position, qreal width) const {
    const QPointF device = m_toDevice.map(position);
    return m_toDevice.inverted().map(QPointF(aligned(device.x(), width), aligned(device.y(), width)));
}

QRectF CrispLines::rect(const QRectF& rect, qreal width) const {
    return {position(rect.topLeft(), width), position(rect.bottomRight(), width)};
}

qreal CrispLines::aligned(qreal devicePosition, qreal width) const {
    const auto pixels = static_cast<int>(std::round(this->width(width) * m_toDevice.m11()));
    return pixels % 2 == 1 ? std::floor(devicePosition) + 0.5 : std::round(devicePosition);
}

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

OutputChartPainter::OutputChartPainter(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout,
                                       qreal viewHeight, const QPalette& palette)
    : m_painter(painter)
    , m_chart(chart)
    , m_layout(layout)
    , m_fromChart(turnedOver(viewHeight))
    , m_colors(MenuColors::of(palette))
    , m_crisp(painter) {}

void OutputChartPainter::paint(std::optional<std::size_t> inspectedIndex) {
    m_painter.setRenderHint(QPainter::Antialiasing);
    paintBackground();
    paintGrid();
    paintYTicks();
    if (m_chart.values.empty()) {
        paintEmptyText();
        return;
    }
    const std::vector<QPointF> points = chartPoints(m_chart.values, m_layout);
    paintValues(points);
    if (inspectedIndex && *inspectedIndex < points.size()) {
        paintInspector(*inspectedIndex, points[*inspectedIndex]);
    }
    paintXAxisLabels();
}

void OutputChartPainter::paintBackground() {
    const QRectF rect = m_crisp.rect(m_fromChart.mapRect(m_layout.plotRect), 1);
    m_painter.setPen(QPen(withAlpha(m_colors.separator, 0.4), m_crisp.width(1)));
    m_painter.setBrush(withAlpha(m_colors.controlBackground, 0.35));
    m_painter.drawRoundedRect(rect, plotRadius, plotRadius);
}

void OutputChartPainter::paintGrid() {
    const QPen pen = dashedPen(withAlpha(m_colors.separator, 0.35), m_crisp.width(0.5), 4, 6);
    const QRectF& chart = m_layout.chartRect;
    for (const qreal fraction : {0.0, 0.5, 1.0}) {
        const qreal y = lowerEdge(chart) + chart.height() * fraction;
        strokeLine({chart.left(), y}, {chart.right(), y}, pen);
    }
}

void OutputChartPainter::paintYTicks() {
    const QFont font = MenuFonts::axisLabel();
    for (const PlacedText& tick : placedYTicks(m_layout, sizeIn(font))) {
        paintText(tick, font, m_colors.tertiaryLabel);
    }
}

void OutputChartPainter::paintEmptyText() {
    m_painter.setFont(MenuFonts::emptyChart());
    m_painter.setPen(m_colors.secondaryLabel);
    m_painter.drawText(m_fromChart.mapRect(m_layout.plotRect), Qt::AlignCenter, QStringLiteral("No data yet"));
}

void OutputChartPainter::paintValues(const std::vector<QPointF>& points) {
    if (points.size() == 1) {
        paintDot(points.front());
    } else {
        paintCurve(points);
    }
}

void OutputChartPainter::paintCurve(const std::vector<QPointF>& points) {
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

void OutputChartPainter::paintInspector(std::size_t index, QPointF point) {
    const QRectF& chart = m_layout.chartRect;
    strokeLine({point.x(), lowerEdge(chart)}, {point.x(), upperEdge(chart)},
               dashedPen(withAlpha(m_colors.accent, 0.45), m_crisp.width(1), 3, 3));
    paintDot(point);
    const QString label = m_chart.pointLabels.value(static_cast<qsizetype>(index));
    const QString text = inspectorText(m_chart.values[index], label);
    paintBubble(inspectorBubble(text, point.x(), chart, sizeIn(MenuFonts::inspector())));
}

void OutputChartPainter::paintBubble(const InspectorBubble& bubble) {
    const QRectF rect = m_crisp.rect(m_fromChart.mapRect(bubble.rect), 1);
    m_painter.setPen(QPen(withAlpha(m_colors.separator, 0.5), m_crisp.width(1)));
    m_painter.setBrush(withAlpha(m_colors.windowBackground, 0.9));
    m_painter.drawRoundedRect(rect, bubbleRadius, bubbleRadius);
    paintText(bubble.text, MenuFonts::inspector(), m_colors.label);
}

void OutputChartPainter::paintXAxisLabels() {
    const QFont font = MenuFonts::axisLabel();
    for (const PlacedText& label : placedXAxisLabels(m_chart.xAxisLabels, m_layout.chartRect, sizeIn(font))) {
        paintText(label, font, m_colors.tertiaryLabel);
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

} // namespace

void paintOutputChart(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout, qreal viewHeight,
                      const QPalette& palette, std::optional<std::size_t> inspectedIndex) {
    OutputChartPainter(painter, chart, layout, viewHeight, palette).paint(inspectedIndex);
}

} // namespace Varnel
