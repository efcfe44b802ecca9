#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>

#include <VarnelStatusMenu/Menu/MenuAccessibility.h>
#include <VarnelStatusMenu/Menu/StatusPopup.h>
#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <QCursor>
#include <QGuiApplication>
#include <QProcessEnvironment>
#include <QScreen>

#include <utility>

namespace Varnel {

namespace {

/// The click on the status item that closes an open menu, because it is outside of it, arrives a second time as the
/// item's own activation: within this time it does not open the menu again.
constexpr qint64 clickMilliseconds = 400;

} // namespace

StatusMenuPresenter::StatusMenuPresenter(FreeArea freeArea)
    : m_freeArea(std::move(freeArea)) {
    makeMenusAccessible();
}

StatusMenuPresenter::~StatusMenuPresenter() {
    delete m_popup;
    delete m_window;
}

void StatusMenuPresenter::openPopup(std::optional<QPoint> item) {
    const PopupSession session =
        popupSession(QGuiApplication::platformName(), QProcessEnvironment::systemEnvironment());
    switch (session.way) {
    case PopupWay::menu:
        openPopupMenu();
        break;
    case PopupWay::placedWindow:
    case PopupWay::placedCover:
        openPlacedWindow(session, item);
        break;
    case PopupWay::maximizedCover:
        openMaximizedCover(session.trayCorner, item);
        break;
    case PopupWay::floatingWindow:
        newPopupWindow()->showMenu(std::nullopt);
        break;
    }
    m_popup->activateWindow();
}

void StatusMenuPresenter::openPopupMenu() {
    auto* opened = new StatusPopupMenu(m_content.menu);
    follow(opened);
    // Left to itself, a menu covers the panel on some desktops.
    opened->ensurePolished();
    opened->popup(movedInside(m_freeArea(QCursor::pos()), QCursor::pos(), opened->sizeHint()));
}

void StatusMenuPresenter::openMaximizedCover(Qt::Corner trayCorner, std::optional<QPoint> item) {
    StatusPopupWindow* opened = newPopupWindow();
    const QScreen* screen = item ? QGuiApplication::screenAt(*item) : nullptr;
    const QRect bounds = (screen != nullptr ? screen : QGuiApplication::primaryScreen())->geometry();
    const QPoint at = screen != nullptr ? *item : inCorner(bounds, QSize(1, 1), trayCorner);
    opened->showMaximizedOver(
        [bounds, at, size = opened->menuSize()](QSize window) { return cornerInMaximized(bounds, window, at, size); });
}

void StatusMenuPresenter::openPlacedWindow(const PopupSession& session, std::optional<QPoint> item) {
    StatusPopupWindow* opened = newPopupWindow();
    const QScreen* screen = item ? QGuiApplication::screenAt(*item) : nullptr;
    const QRect bounds = (screen != nullptr ? screen : QGuiApplication::primaryScreen())->geometry();
    QRect area = m_freeArea(screen != nullptr ? *item : bounds.center());
    const QPoint corner = screen != nullptr ? movedInside(area, *item, opened->menuSize())
                                            : cornerAtPanel(bounds, area, opened->menuSize(), session.trayCorner);
    if (session.way == PopupWay::placedWindow) {
        opened->showMenu(corner);
        return;
    }
    if (area == bounds) {
        area.setBottom(area.bottom() - 1); // a window as large as the screen is taken for one of the whole screen
    }
    opened->showOver(area, corner);
}

StatusPopupWindow* StatusMenuPresenter::newPopupWindow() {
    auto* opened = new StatusPopupWindow(m_content.menu);
    follow(opened);
    return opened;
}

template <typename Popup>
void StatusMenuPresenter::follow(Popup* opened) {
    m_popup = opened;
    connect(opened, &Popup::commandChosen, this, [this](StatusMenuCommand command) { deliver(command); });
    connect(opened, &Popup::dismissed, this, [this] { m_sinceDismissal.start(); });
    connect(opened, &Popup::closed, opened, &QObject::deleteLater);
}

/// Queued, so that the handler runs when the menu has closed and is free to delete whatever it likes.
void StatusMenuPresenter::deliver(StatusMenuCommand command) {
    const auto callHandler = [this, command] {
        if (const auto called = m_commandHandler) {
            called(command);
        }
    };
    QMetaObject::invokeMethod(this, callHandler, Qt::QueuedConnection);
}

bool StatusMenuPresenter::isClickThatDismissed() {
    const bool isSameClick = m_sinceDismissal.isValid() && !m_sinceDismissal.hasExpired(clickMilliseconds);
    m_sinceDismissal.invalidate();
    return isSameClick;
}

void StatusMenuPresenter::setCommandHandler(std::function<void(StatusMenuCommand)> handler) {
    m_commandHandler = std::move(handler);
}

void StatusMenuPresenter::setContent(const StatusItemContent& content) {
    m_content = content;
    if (m_window) {
        m_window->setContent(content);
    }
}

void StatusMenuPresenter::toggleMenu(std::optional<QPoint> item) {
    if (isMenuOpen()) {
        m_popup->close();
    } else if (!isClickThatDismissed()) {
        openPopup(item);
    }
}

bool StatusMenuPresenter::isMenuOpen() const {
    return m_popup && m_popup->isVisible();
}

OutputWindow& StatusMenuPresenter::window() {
    if (!m_window) {
        m_window = new OutputWindow(m_content, m_outputSource);
        m_window->setStandsForItem(m_windowStandsForItem);
        connect(m_window, &OutputWindow::commandChosen, this, [this](StatusMenuCommand command) { deliver(command); });
        // Queued: the handler may open the next window.
        const auto callHandler = [this] {
            if (m_windowClosed) {
                m_windowClosed();
            }
        };
        connect(m_window, &QObject::destroyed, this, callHandler, Qt::QueuedConnection);
    }
    return *m_window;
}

void StatusMenuPresenter::showWindow() {
    window().bringToFront();
}

void StatusMenuPresenter::showWindowQuietly() {
    OutputWindow& shown = window();
    shown.setAttribute(Qt::WA_ShowWithoutActivating);
    shown.show();
}

void StatusMenuPresenter::showWindowMinimized() {
    window().showInTaskbar();
}

void StatusMenuPresenter::closeWindow() {
    if (m_window) {
        disconnect(m_window, &QObject::destroyed, this, nullptr);
        m_window->close();
    }
}

void StatusMenuPresenter::setWindowClosedHandler(std::function<void()> handler) {
    m_windowClosed = std::move(handler);
}

bool StatusMenuPresenter::isWindowOpen() const {
    return m_window && m_window->isVisible();
}

void StatusMenuPresenter::setWindowStandsForItem(bool standsForItem) {
    m_windowStandsForItem = standsForItem;
    if (m_window) {
        m_window->setStandsForItem(standsForItem);
    }
}

} // namespace Varnel
