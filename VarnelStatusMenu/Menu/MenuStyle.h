#pragma once

#include <QFont>
#include <QPalette>

namespace Varnel {

/// The roles in which the menu's own views are painted, taken from the palette of the desktop.
struct MenuColors {
    QColor accent;
    QColor controlBackground;
    QColor separator;
    QColor windowBackground;
    QColor label;
    QColor secondaryLabel;
    QColor tertiaryLabel;

    /// The colours of the active group: the rows are information, not disabled controls.
    static MenuColors of(const QPalette& palette);
};

/// The colour with its opacity multiplied by `alpha`, 0 to 1.
QColor withAlpha(QColor color, qreal alpha);

namespace MenuFonts {

/// The desktop's own menu font: rows and commands.
QFont row();

/// The menu font at 9 pixels: the chart's axis labels.
QFont axisLabel();

/// The menu font at 11 pixels: what an empty chart says.
QFont emptyChart();

/// The application's font at 10 pixels, medium weight: the inspector.
QFont inspector();

} // namespace MenuFonts

} // namespace Varnel
