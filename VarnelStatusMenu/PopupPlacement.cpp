#include <VarnelStatusMenu/PopupPlacement.h>

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

#include <algorithm>

namespace Varnel {

QPoint popupPosition(QPoint pointer, QSize menu, const QRect& available) {
    const int rightmost = std::max(available.left(), available.right() + 1 - menu.width());
    const int lowest = std::max(available.top(), available.bottom() + 1 - menu.height());
    return {std::clamp(pointer.x(), available.left(), rightmost), std::clamp(pointer.y(), available.top(), lowest)};
}

void popupAtPointer(QMenu& menu) {
    const QPoint pointer = QCursor::pos();
    const QScreen* screen = QGuiApplication::screenAt(pointer);
    menu.popup(screen ? popupPosition(pointer, menu.sizeHint(), screen->availableGeometry()) : pointer);
}

} // namespace Varnel
