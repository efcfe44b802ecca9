#include <VarnelStatusMenu/Linux/LegacyTray.h>

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace Varnel {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

/// Null where the application does not run on X11.
xcb_connection_t* x11Connection() {
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application ? application->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : 0;
}

xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : 0;
}

/// Asks the server to tell of the window's end.
void watchWindow(xcb_connection_t* connection, xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
}

} // namespace

LegacyTray::LegacyTray(std::function<void()> changed)
    : m_changed(std::move(changed)) {
    if (auto* connection = x11Connection()) {
        m_managerAtom = atom(connection, "MANAGER");
        m_trayAtom = atom(connection, "_NET_SYSTEM_TRAY_S0");
        findWindow();
        qGuiApp->installNativeEventFilter(this);
    }
}

LegacyTray::~LegacyTray() = default;

void LegacyTray::findWindow() {
    auto* connection = x11Connection();
    m_window = selectionOwner(connection, m_trayAtom);
    if (!isPresent()) {
        return;
    }
    watchWindow(connection, m_window);
    // It may have gone before the server was asked to tell.
    m_window = selectionOwner(connection, m_trayAtom);
}

bool LegacyTray::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & ~0x80;
    bool isOfTray = false;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto* announcement = reinterpret_cast<const xcb_client_message_event_t*>(event);
        isOfTray = announcement->type == m_managerAtom && announcement->data.data32[1] == m_trayAtom;
    } else if (type == XCB_DESTROY_NOTIFY) {
        isOfTray = isPresent() && reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == m_window;
    }
    if (isOfTray) {
        findWindow();
        m_changed();
    }
    return false;
}

} // namespace Varnel
