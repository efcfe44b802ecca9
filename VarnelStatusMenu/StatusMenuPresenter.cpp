#include <VarnelStatusMenu/StatusMenuPresenter.h>

#include <VarnelStatusMenu/StatusMenuWindow.h>
#include <VarnelStatusMenu/StatusPopupMenu.h>
#include <VarnelStatusMenu/StatusPopupWindow.h>

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

struct StatusMenuPresenter::Private {
    void openPopupMenu();
    void openPopupWindow();
    template <typename Popup>
    void follow(Popup* opened);
    void deliver(StatusMenuCommand command);
    StatusMenuWindow& titledWindow(const QString& title);
    bool isClickThatDismissed();

    StatusMenu menu;
    std::function<void(StatusMenuCommand)> handler;
    std::function<void()> windowClosed;
    QPointer<QWidget> popup;
    QPointer<StatusMenuWindow> window;
    bool windowStandsForItem = false;
    QElapsedTimer sinceDismissal;
    QObject context; // what is still to be delivered dies with it
};

void StatusMenuPresenter::Private::openPopupMenu() {
    auto* opened = new StatusPopupMenu(menu);
    follow(opened);
    opened->popup(QCursor::pos());
}

void StatusMenuPresenter::Private::openPopupWindow() {
    auto* opened = new StatusPopupWindow(menu);
    follow(opened);
    opened->show();
    opened->activateWindow();
}

template <typename Popup>
void StatusMenuPresenter::Private::follow(Popup* opened) {
    popup = opened;
    QObject::connect(opened, &Popup::commandChosen, &context, [this](StatusMenuCommand command) { deliver(command); });
    QObject::connect(opened, &Popup::dismissed, &context, [this] { sinceDismissal.start(); });
    QObject::connect(opened, &Popup::closed, opened, &QObject::deleteLater);
}

/// Queued, so that the handler runs when the menu has closed and is free to delete whatever it likes.
void StatusMenuPresenter::Private::deliver(StatusMenuCommand command) {
    const auto callHandler = [this, command] {
        if (const auto called = handler) {
            called(command);
        }
    };
    QMetaObject::invokeMethod(&context, callHandler, Qt::QueuedConnection);
}

bool StatusMenuPresenter::Private::isClickThatDismissed() {
    const bool isSameClick = sinceDismissal.isValid() && !sinceDismissal.hasExpired(clickMilliseconds);
    sinceDismissal.invalidate();
    return isSameClick;
}

StatusMenuPresenter::StatusMenuPresenter()
    : d(std::make_unique<Private>()) {}

StatusMenuPresenter::~StatusMenuPresenter() {
    delete d->popup;
    delete d->window;
}

void StatusMenuPresenter::setCommandHandler(std::function<void(StatusMenuCommand)> handler) {
    d->handler = std::move(handler);
}

void StatusMenuPresenter::setMenu(const StatusMenu& menu) {
    d->menu = menu;
    if (d->window) {
        d->window->setMenu(menu);
    }
}

void StatusMenuPresenter::toggleMenu() {
    if (isMenuOpen()) {
        d->popup->close();
    } else if (!d->isClickThatDismissed()) {
        if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
            d->openPopupWindow();
        } else {
            d->openPopupMenu();
        }
    }
}

bool StatusMenuPresenter::isMenuOpen() const {
    return d->popup && d->popup->isVisible();
}

StatusMenuWindow& StatusMenuPresenter::Private::titledWindow(const QString& title) {
    if (!window) {
        window = new StatusMenuWindow(menu);
        window->setStandsForItem(windowStandsForItem);
        QObject::connect(window, &StatusMenuWindow::commandChosen, &context,
                         [this](StatusMenuCommand command) { deliver(command); });
        // Queued: the handler may open the next window.
        const auto callHandler = [this] {
            if (windowClosed) {
                windowClosed();
            }
        };
        QObject::connect(window, &QObject::destroyed, &context, callHandler, Qt::QueuedConnection);
    }
    window->setWindowTitle(title);
    return *window;
}

void StatusMenuPresenter::showWindow(const QString& title) {
    d->titledWindow(title).bringToFront();
}

void StatusMenuPresenter::showWindowQuietly(const QString& title) {
    StatusMenuWindow& window = d->titledWindow(title);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.show();
}

void StatusMenuPresenter::showWindowMinimized(const QString& title) {
    d->titledWindow(title).showInTaskbar();
}

void StatusMenuPresenter::closeWindow() {
    if (d->window) {
        QObject::disconnect(d->window, &QObject::destroyed, &d->context, nullptr);
        d->window->close();
    }
}

void StatusMenuPresenter::setWindowClosedHandler(std::function<void()> handler) {
    d->windowClosed = std::move(handler);
}

bool StatusMenuPresenter::isWindowOpen() const {
    return d->window && d->window->isVisible();
}

void StatusMenuPresenter::setWindowTitle(const QString& title) {
    if (d->window) {
        d->window->setWindowTitle(title);
    }
}

void StatusMenuPresenter::setWindowStandsForItem(bool standsForItem) {
    d->windowStandsForItem = standsForItem;
    if (d->window) {
        d->window->setStandsForItem(standsForItem);
    }
}

} // namespace Varnel
