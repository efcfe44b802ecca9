#include <Varnel/Linux/TaskbarPresence.h>

#include <VarnelShared/Linux/X11.h>

#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace Varnel {

namespace {
xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const X11::ReplyPointer<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}

/// Messages about a window go to the root: the window manager reads them there.
void tellWindowManager(xcb_connection_t* connection, const QWindow& window, std::string_view type,
                       std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = X11::atom(connection, type);
    std::copy(data.begin(), data.end(), std::begin(message.data.data32));
    constexpr std::uint32_t toTheWindowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(connection, 0, rootOf(connection, message.window), toTheWindowManager,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}
} // namespace

bool canControlTaskbar() {
    return X11::connection() != nullptr;
}

void setSkipsTaskbar(const QWindow& window, bool skips) {
    xcb_connection_t* connection = X11::connection();
    if (connection != nullptr) {
        constexpr std::uint32_t sourceIsApplication = 1;
        tellWindowManager(connection, window, "_NET_WM_STATE",
                          {skips ? 1U : 0U, // _NET_WM_STATE_ADD, _NET_WM_STATE_REMOVE
                           X11::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                           X11::atom(connection, "_NET_WM_STATE_SKIP_PAGER"), sourceIsApplication, 0});
    }
}

void bringToFront(const QWindow& window) {
    xcb_connection_t* connection = X11::connection();
    if (connection != nullptr) {
        constexpr std::uint32_t sourceIsTool = 2;
        tellWindowManager(connection, window, "_NET_ACTIVE_WINDOW", {sourceIsTool, XCB_CURRENT_TIME, 0, 0, 0});
    }
}

} // namespace Varnel
