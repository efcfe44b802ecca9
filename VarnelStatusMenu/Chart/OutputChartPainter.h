#pragma once

#include <VarnelStatusMenu/Chart/ChartGeometry.h>

class QPainter;
class QPalette;

namespace Varnel {

/// Paints the chart into a view of that height, in the colours of the palette; the inspector stands at its index.
void paintOutputChart(QPainter& painter, const StatusMenuChart& chart, const ChartLayout& layout, qreal viewHeight,
                      const QPalette& palette, std::optional<std::size_t> inspectedIndex);

} // namespace Varnel
