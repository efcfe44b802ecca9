#include <VarnelStatusMenu/Linux/PanelFreeArea.h>

#include <VarnelShared/Linux/X11.h>
#include <VarnelStatusMenu/Menu/PopupPlacement.h>

#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace Varnel {

namespace {

/// Window managers put frames of their own around a window.
constexpr int deepestWindow = 5;

bool isPanel(xcb_connection_t* connection, xcb_window_t window) {
    const auto cookie =
        xcb_get_property(connection, 0, window, X11::atom(connection, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 0, 8);
    const X11::ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return false;
    }
    const std::span types(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get())), reply->value_len);
    return std::find(types.begin(), types.end(), X11::atom(connection, "_NET_WM_WINDOW_TYPE_DOCK")) != types.end();
}

xcb_window_t childUnderPointer(xcb_connection_t* connection, xcb_window_t window) {
    const X11::ReplyPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, window), nullptr));
    return reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
}

/// In pixels of the device.
std::optional<QRect> panelUnderPointer(xcb_connection_t* connection) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_window_t outermost = childUnderPointer(connection, root);
    xcb_window_t window = outermost;
    for (int depth = 0; window != XCB_WINDOW_NONE && depth < deepestWindow; ++depth) {
        if (isPanel(connection, window)) {
            const X11::ReplyPointer<xcb_get_geometry_reply_t> reply(
                xcb_get_geometry_reply(connection, xcb_get_geometry(connection, outermost), nullptr));
            return reply ? std::optional(QRect(reply->x, reply->y, reply->width, reply->height)) : std::nullopt;
        }
        window = childUnderPointer(connection, window);
    }
    return std::nullopt;
}

/// A screen's origin is the same in both coordinates.
QRect inLogicalPixels(const QRect& device, const QScreen& screen) {
    const qreal ratio = screen.devicePixelRatio();
    const QPoint origin = screen.geometry().topLeft();
    return {origin + (device.topLeft() - origin) / ratio, device.size() / ratio};
}

} // namespace

QRect panelFreeArea(QPoint at) {
    const QRect announced = announcedFreeArea(at);
    auto* connection = X11::connection();
    const QScreen* screen = QGuiApplication::screenAt(at);
    const auto panel =
        connection != nullptr && screen != nullptr ? panelUnderPointer(connection) : std::optional<QRect>();
    return panel ? largestPartBeside(announced, inLogicalPixels(*panel, *screen)) : announced;
}

QRect largestPartBeside(const QRect& area, const QRect& panel) {
    if (!area.intersects(panel)) {
        return area;
    }
    std::array parts{area, area, area, area};
    parts[0].setBottom(panel.top() - 1);
    parts[1].setTop(panel.bottom() + 1);
    parts[2].setRight(panel.left() - 1);
    parts[3].setLeft(panel.right() + 1);
    const auto sizeOf = [](const QRect& part) { return part.isValid() ? part.width() * part.height() : 0; };
    const auto largest = std::max_element(
        parts.begin(), parts.end(), [&](const QRect& one, const QRect& other) { return sizeOf(one) < sizeOf(other); });
    return 2 * sizeOf(*largest) < sizeOf(area) ? area : *largest;
}

} // namespace Varnel
