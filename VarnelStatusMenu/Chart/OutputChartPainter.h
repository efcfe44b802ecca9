#pragma once

#include <VarnelStatusMenu/Chart/ChartGeometry.h>
#include <VarnelStatusMenu/Chart/CrispLines.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QFont>

#include <initializer_list>

class QPainter;
class QPalette;
class QPen;

namespace Varnel {

/// The size at which texts are drawn in that font.
TextSize textSizeIn(const QFont& font);

/// What a chart is written in.
struct ChartFonts {
    QFont axis;
    QFont empty; ///< of the words that stand in place of values
    QFont inspector;

    static ChartFonts ofMenu();
};

/// Paints the parts of one chart once, in the colours of a palette, in the order in which they are called. Places are
/// in chart coordinates.
class OutputChartPainter {
public:
    /// Keeps references to `painter` and `layout`. `fromChart` leads to the coordinates of the painter.
    OutputChartPainter(QPainter& painter, const ChartLayout& layout, const QTransform& fromChart,
                       const QPalette& palette, ChartFonts fonts);

    /// The background, a line of the grid at each fraction of the height, and the labels of the value axis.
    void paintFrame(std::initializer_list<double> gridFractions);

    void paintEmptyText();

    /// One or more neighbouring values, from left to right: a dot, or a curve and the area below it.
    void paintValues(const std::vector<QPointF>& points);

    /// Values that are not the program's own, at least one: a dotted curve without an area.
    void paintBorrowedValues(const std::vector<QPointF>& points);

    void paintInspector(QPointF point, const QString& text);
    void paintXAxisLabels(const std::vector<PlacedText>& labels);

private:
    void paintBackground();
    void paintGrid(std::initializer_list<double> fractions);
    void paintYTicks();
    void paintBubble(const InspectorBubble& bubble);
    void paintDot(QPointF point);
    void paintText(const PlacedText& text, const QFont& font, const QColor& color);
    void strokeLine(QPointF from, QPointF to, const QPen& pen);

    QPainter& m_painter;
    const ChartLayout& m_layout;
    QTransform m_fromChart;
    MenuColors m_colors;
    ChartFonts m_fonts;
    CrispLines m_crisp;
};

/// Paints the menu's chart in the colours of the palette; the inspector stands at its index.
void paintOutputChart(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout,
                      const QTransform& fromChart, const QPalette& palette, std::optional<std::size_t> inspectedIndex);

} // namespace Varnel
