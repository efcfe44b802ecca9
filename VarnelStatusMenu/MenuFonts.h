#pragma once

#include <QFont>

namespace Varnel::MenuFonts {

/// The desktop's own menu font: rows and commands.
QFont row();

/// The menu font at 9 pixels: the chart's axis labels.
QFont axisLabel();

/// The menu font at 11 pixels: what an empty chart says.
QFont emptyChart();

/// The application's font at 10 pixels, medium weight: the inspector.
QFont inspector();

} // namespace Varnel::MenuFonts
