#include <Varnel/Linux/DesktopApplicationShell.h>

#include <Varnel/Linux/TaskbarPresence.h>
#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <QApplication>
#include <QEvent>
#include <QImageReader>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <utility>

namespace Varnel {

using namespace std::chrono_literals;

namespace {
/// A window that the window manager has; the icon in a legacy tray is none.
bool isOrdinaryWindow(const QWidget& widget) {
    return widget.isWindow() && (widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog) &&
           !widget.windowFlags().testFlag(Qt::BypassWindowManagerHint);
}

QWidgetList visibleWindows() {
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* window) { return !window->isVisible() || !isOrdinaryWindow(*window); });
    return windows;
}

bool standsForItem(const QWidget& window) {
    const auto* statusWindow = qobject_cast<const OutputWindow*>(&window);
    return statusWindow != nullptr && statusWindow->standsForItem();
}
} // namespace

DesktopApplicationShell::DesktopApplicationShell() {
    qApp->installEventFilter(this);
}

DesktopApplicationShell::~DesktopApplicationShell() = default;

bool DesktopApplicationShell::setActivationPolicy(ActivationPolicy policy) {
    if (policy == ActivationPolicy::regular && !canControlTaskbar()) {
        return false;
    }
    m_policy = policy;
    if (policy == ActivationPolicy::regular) {
        showTaskbarWindow();
    } else {
        m_taskbarWindow.reset();
    }
    applyToWindows();
    return true;
}

void DesktopApplicationShell::setReopenHandler(std::function<void()> handler) {
    m_reopen = std::move(handler);
}

void DesktopApplicationShell::setApplicationIcon(const QString& imagePath) {
    m_isIconLoaded = m_iconPath == imagePath && m_isIconLoaded;
    m_iconPath = imagePath;
    if (!visibleWindows().isEmpty()) {
        loadIcon();
    }
}

void DesktopApplicationShell::hide() {
    for (QWidget* window : visibleWindows()) {
        if (standsForItem(*window)) {
            window->showMinimized();
        } else if (window != m_taskbarWindow.get()) {
            window->hide();
        }
    }
}

void DesktopApplicationShell::terminate() {
    QApplication::quit();
}

bool DesktopApplicationShell::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_taskbarWindow.get() && event->type() == QEvent::WindowStateChange) {
        onTaskbarWindowStateChanged();
    } else if (watched == m_taskbarWindow.get() && event->type() == QEvent::Close && event->spontaneous()) {
        // Closed from the taskbar, it would be gone while the setting says that it is there. Quitting closes it too,
        // but not from outside.
        event->ignore();
        return true;
    } else if (event->type() == QEvent::Show && watched->isWidgetType() &&
               isOrdinaryWindow(*static_cast<QWidget*>(watched))) {
        onWindowShown(static_cast<QWidget&>(*watched));
    } else if (event->type() == QEvent::ZOrderChange && watched->isWidgetType() &&
               isOrdinaryWindow(*static_cast<QWidget*>(watched))) {
        onWindowRaised(static_cast<QWidget&>(*watched));
    }
    return QObject::eventFilter(watched, event);
}

void DesktopApplicationShell::onWindowShown(QWidget& window) {
    loadIcon();
    // The window is mapped after its show event; the message to the window manager must come later than that.
    QMetaObject::invokeMethod(&window, [this, &window] { applyToWindow(window); }, Qt::QueuedConnection);
    if (const auto* statusWindow = qobject_cast<OutputWindow*>(&window)) {
        connect(statusWindow, &OutputWindow::standsForItemChanged, this, &DesktopApplicationShell::applyToWindows,
                Qt::UniqueConnection);
    }
}

void DesktopApplicationShell::onWindowRaised(QWidget& window) {
    const auto bringRaisedToFront = [&window] {
        if (window.isVisible() && window.windowHandle()) {
            bringToFront(*window.windowHandle());
        }
    };
    // First after what Qt asks for by itself, for of two wishes the later one counts. And once more: GNOME's overview,
    // if the program was started there, gives the front back to the window before when it closes, and Qt does not
    // notice.
    for (const auto delay : {0ms, 600ms}) {
        QTimer::singleShot(delay, &window, bringRaisedToFront);
    }
}

void DesktopApplicationShell::applyToWindows() {
    for (const QWidget* window : visibleWindows()) {
        applyToWindow(*window);
    }
}

void DesktopApplicationShell::showTaskbarWindow() {
    if (m_taskbarWindow) {
        return;
    }
    loadIcon();
    m_taskbarWindow = std::make_unique<QWidget>();
    m_taskbarWindow->setWindowTitle(QApplication::applicationDisplayName());
    m_taskbarWindow->setFixedSize(1, 1);
    m_taskbarWindow->showMinimized();
}

void DesktopApplicationShell::onTaskbarWindowStateChanged() {
    if (m_taskbarWindow->isMinimized()) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_taskbarWindow) {
                m_taskbarWindow->showMinimized();
            }
            if (m_reopen) {
                m_reopen();
            }
        },
        Qt::QueuedConnection);
}

void DesktopApplicationShell::applyToWindow(const QWidget& window) const {
    if (window.isVisible() && window.windowHandle()) {
        setSkipsTaskbar(*window.windowHandle(), m_policy == ActivationPolicy::accessory && !standsForItem(window));
    }
}

void DesktopApplicationShell::loadIcon() {
    if (std::exchange(m_isIconLoaded, true)) {
        return;
    }
    QImageReader reader(m_iconPath);
    reader.setScaledSize({256, 256});
    const QPixmap largest = QPixmap::fromImage(reader.read());
    QIcon icon;
    if (!largest.isNull()) {
        // A taskbar takes the size nearest to its own from the window; without small ones it scales badly.
        for (const int size : {256, 128, 64, 48, 32, 24, 16}) {
            icon.addPixmap(largest.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        }
    }
    QApplication::setWindowIcon(icon);
}

} // namespace Varnel
