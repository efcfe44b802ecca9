#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>

#include <VarnelStatusMenu/Menu/StatusMenuWindow.h>
#include <VarnelStatusMenu/Menu/StatusPopup.h>

#include <QCursor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPointer>

#include <utility>

namespace Varnel {

namespace {

/// The click on the status item that closes an open menu, because it is outside of it, arrives a second time as the
/// item's own activation: within this time it does not open the menu again.
constexpr qint64 clickMilliseconds = 400;

} // namespace

StatusMenuPresenter::~StatusMenuPresenter() {
    delete m_popup;
    delete m_window;
}

void StatusMenuPresenter::openPopupMenu() {
    auto* opened = new StatusPopupMenu(m_content.menu);
    follow(opened);
    opened->popup(QCursor::pos());
}

void StatusMenuPresenter::openPopupWindow() {
    auto* opened = new StatusPopupWindow(m_content.menu);
    follow(opened);
    opened->show();
    opened->activateWindow();
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

void StatusMenuPresenter::toggleMenu() {
    if (isMenuOpen()) {
        m_popup->close();
    } else if (!isClickThatDismissed()) {
        if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
            openPopupWindow();
        } else {
            openPopupMenu();
        }
    }
}

bool StatusMenuPresenter::isMenuOpen() const {
    return m_popup && m_popup->isVisible();
}

StatusMenuWindow& StatusMenuPresenter::window() {
    if (!m_window) {
        m_window = new StatusMenuWindow(m_content);
        m_window->setStandsForItem(m_windowStandsForItem);
        connect(m_window, &StatusMenuWindow::commandChosen, this,
                [this](StatusMenuCommand command) { deliver(command); });
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
    StatusMenuWindow& shown = window();
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
