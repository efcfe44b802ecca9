#include <Varnel/Linux/TaskbarPresence.h>

#include <VarnelShared/Linux/X11.h>

#include <QWindow>

#include <xcb/xcb.h>

namespace Varnel {

namespace {
xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const X11::ReplyPointer<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}
} // namespace

bool canControlTaskbar() {
    return X11::connection() != nullptr;
}

void setSkipsTaskbar(const QWindow& window, bool skips) {
    xcb_connection_t* connection = X11::connection();
    if (!connection) {
        return;
    }
    constexpr std::uint32_t sourceIsApplication = 1;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = X11::atom(connection, "_NET_WM_STATE");
    message.data.data32[0] = skips ? 1 : 0; // _NET_WM_STATE_ADD, _NET_WM_STATE_REMOVE
    message.data.data32[1] = X11::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR");
    message.data.data32[2] = X11::atom(connection, "_NET_WM_STATE_SKIP_PAGER");
    message.data.data32[3] = sourceIsApplication;
    constexpr std::uint32_t toTheWindowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(connection, 0, rootOf(connection, message.window), toTheWindowManager,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace Varnel
