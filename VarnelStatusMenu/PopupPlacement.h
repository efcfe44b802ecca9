#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

class QMenu;

namespace Varnel {

/// Where a menu of this size opens for a pointer: at the pointer, moved so that it lies inside `available`, the screen
/// without its panels. A menu for an item in a panel thus opens beside the panel and covers no part of it.
QPoint popupPosition(QPoint pointer, QSize menu, const QRect& available);

/// Opens the menu at the mouse pointer, placed by `popupPosition` on the screen that the pointer is on. Panels tell no
/// usable coordinates of their own.
void popupAtPointer(QMenu& menu);

} // namespace Varnel
