#pragma once

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

} // namespace Varnel
