#include <VarnelStatusMenu/Linux/XEmbedStatusItem.h>

#include <VarnelShared/Linux/X11.h>
#include <VarnelStatusMenu/Linux/PanelFreeArea.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>
#include <VarnelStatusMenu/Menu/CommandIcon.h>
#include <VarnelStatusMenu/Menu/PopupPlacement.h>

#include <QAbstractNativeEventFilter>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

#include <xcb/xcb.h>

#include <utility>

namespace Varnel {

namespace {

/// The title in the sizes that trays give their icons; each is drawn by itself, because a scaled text blurs.
QIcon titleIcon(const QString& title, TitleAge age) {
    QIcon icon;
    for (const int size : {16, 20, 22, 24, 28, 32, 36, 40, 44, 48, 64}) {
        icon.addPixmap(QPixmap::fromImage(squareTitlePicture(title, size, age)));
    }
    return icon;
}

/// `owner` outlives the menu, which is gone when what is chosen in it happens.
void addItem(QMenu& menu, const ExportedMenuItem& item, const StatusItemHandlers& handlers, QObject& owner) {
    if (item.kind == ExportedMenuItem::Kind::separator) {
        menu.addSeparator();
        return;
    }
    // An ampersand marks the key of a row; two are one to read.
    QAction* action =
        menu.addAction(commandIcon(item.iconName), QString(item.title).replace(QLatin1Char('&'), QStringLiteral("&&")));
    action->setShortcut(item.key);
    action->setEnabled(item.isEnabled);
    if (item.kind == ExportedMenuItem::Kind::showChart) {
        QObject::connect(
            action, &QAction::triggered, &owner, [open = handlers.openMenu] { open(std::nullopt); },
            Qt::QueuedConnection);
    } else if (item.kind == ExportedMenuItem::Kind::showWindow) {
        QObject::connect(
            action, &QAction::triggered, &owner, [show = handlers.showWindow] { show(); }, Qt::QueuedConnection);
    } else if (item.command) {
        QObject::connect(action, &QAction::triggered, action,
                         [choose = handlers.choose, command = *item.command] { choose(command); });
    }
}

/// Pops up the text menu at the pointer, as a panel would that draws such menus by itself. It keeps its rows until it
/// closes, and frees itself then.
void popUpPlainMenu(const ExportedMenu& rows, const StatusItemHandlers& handlers, QObject& owner) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const ExportedMenuItem& item : rows) {
        addItem(*menu, item, handlers, owner);
    }
    menu->ensurePolished();
    menu->popup(movedInside(panelFreeArea(QCursor::pos()), QCursor::pos(), menu->sizeHint()));
}

xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const X11::ReplyPointer<xcb_get_selection_owner_reply_t> reply(
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

/// The tray of older X11 panels: the window that owns the selection _NET_SYSTEM_TRAY_S0. Never present where the
/// application does not run on X11.
class LegacyTray final : public QAbstractNativeEventFilter {
public:
    /// `changed` is called from the event loop after the tray has come or gone.
    explicit LegacyTray(std::function<void()> changed);

    bool isPresent() const { return m_window != 0; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void findWindow();

    std::function<void()> m_changed;
    std::uint32_t m_managerAtom = 0; ///< type of the message by which a tray announces itself
    std::uint32_t m_trayAtom = 0;
    std::uint32_t m_window = 0;
};

LegacyTray::LegacyTray(std::function<void()> changed)
    : m_changed(std::move(changed)) {
    if (auto* connection = X11::connection()) {
        m_managerAtom = X11::atom(connection, "MANAGER");
        m_trayAtom = X11::atom(connection, "_NET_SYSTEM_TRAY_S0");
        findWindow();
        qGuiApp->installNativeEventFilter(this);
    }
}

void LegacyTray::findWindow() {
    auto* connection = X11::connection();
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

XEmbedStatusItem::XEmbedStatusItem(StatusItemHandlers handlers)
    : m_handlers(std::move(handlers))
    , m_tray(std::make_unique<LegacyTray>([this] {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_availabilityChanged) {
                    m_availabilityChanged();
                }
            },
            Qt::QueuedConnection);
    })) {}

XEmbedStatusItem::~XEmbedStatusItem() = default;

StatusItemBackEnd::Availability XEmbedStatusItem::availability() const {
    return m_tray->isPresent() ? Availability::available : Availability::unavailable;
}

void XEmbedStatusItem::setAvailabilityHandler(std::function<void()> changed) {
    m_availabilityChanged = std::move(changed);
}

void XEmbedStatusItem::setContent(const StatusItemContent& content) {
    m_content = content;
    if (m_icon) {
        applyContent();
    }
}

void XEmbedStatusItem::applyContent() {
    m_icon->setToolTip(m_content.toolTip);
    const TitleAge age = m_content.outdatedLine ? TitleAge::outdated : TitleAge::current;
    if (m_icon->icon().isNull() || m_drawnTitle != m_content.title || m_drawnAge != age) {
        m_drawnTitle = m_content.title;
        m_drawnAge = age;
        m_icon->setIcon(titleIcon(m_content.title, age));
    }
}

void XEmbedStatusItem::setShown(bool isShown) {
    if (!isShown) {
        m_icon.reset();
    } else if (!m_icon) {
        makeIcon();
    }
}

void XEmbedStatusItem::makeIcon() {
    m_icon = std::make_unique<QSystemTrayIcon>();
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Context) {
            popUpPlainMenu(exportedMenu(m_content.menu), m_handlers, *this);
        } else {
            m_handlers.openMenu(std::nullopt);
        }
    });
    applyContent();
    m_icon->show();
}

} // namespace Varnel
