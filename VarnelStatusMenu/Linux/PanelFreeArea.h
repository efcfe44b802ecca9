#pragma once

#include <QPoint>
#include <QRect>

namespace Varnel {

/// What of the screen around the point is free of panels. Some panels reserve no room of the screen: on X11 the one
/// under the pointer is left out too, so that what is opened by a click on it does not cover it.
QRect panelFreeArea(QPoint at);

/// The largest rectangle of the area beside the panel; the whole area where the panel would leave less than half.
QRect largestPartBeside(const QRect& area, const QRect& panel);

} // namespace Varnel
