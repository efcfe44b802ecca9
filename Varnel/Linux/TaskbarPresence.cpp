#include <Varnel/Linux/TaskbarPresence.h>

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace Varnel {

namespace {
xcb_connection_t* x11Connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const std::unique_ptr<xcb_query_tree_reply_t, decltype(&std::free)> reply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr), &std::free);
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}
} // namespace

bool canControlTaskbar() {
    return x11Connection() != nullptr;
}

void setSkipsTaskbar(const QWindow& window, bool skips) {
    xcb_connection_t* connection = x11Connection();
    if (!connection) {
        return;
    }
    constexpr std::uint32_t sourceIsApplication = 1;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = atom(connection, "_NET_WM_STATE");
    message.data.data32[0] = skips ? 1 : 0; // _NET_WM_STATE_ADD, _NET_WM_STATE_REMOVE
    message.data.data32[1] = atom(connection, "_NET_WM_STATE_SKIP_TASKBAR");
    message.data.data32[2] = atom(connection, "_NET_WM_STATE_SKIP_PAGER");
    message.data.data32[3] = sourceIsApplication;
    constexpr std::uint32_t toTheWindowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(connection, 0, rootOf(connection, message.window), toTheWindowManager,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace Varnel
