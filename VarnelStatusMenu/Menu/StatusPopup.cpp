#include <VarnelStatusMenu/Menu/StatusPopup.h>

#include <VarnelStatusMenu/Menu/CommandIcon.h>
#include <VarnelStatusMenu/Menu/MenuEntryView.h>
#include <VarnelStatusMenu/Menu/StatusMenuPanel.h>

#include <QCloseEvent>
#include <QHideEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <QVBoxLayout>
#include <QWidgetAction>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {

constexpr int smallestPadding = 4; // above the first and below the last entry; some styles leave none

/// Room for a menu in a window, with the frame that the desktop's style gives its menus.
class MenuFrame final : public QWidget {
public:
    explicit MenuFrame(QWidget* parent)
        : QWidget(parent)
        , m_width(style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this)) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(m_width, m_width, m_width, m_width);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStyleOptionFrame option;
        option.initFrom(this);
        option.lineWidth = m_width;
        QStylePainter(this).drawPrimitive(QStyle::PE_FrameMenu, option);
    }

private:
    int m_width;
};

bool canBeChosen(const QAction* action) {
    return action != nullptr && action->isEnabled() && !action->isSeparator();
}

} // namespace

StatusPopupMenu::StatusPopupMenu(StatusMenu menu)
    : m_menu(std::move(menu)) {
    // The separators are part of the menu's order, also where two would meet or one stands last.
    setSeparatorsCollapsible(false);
    const int missingPadding =
        std::max(0, smallestPadding - style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, this));
    setContentsMargins(0, missingPadding, 0, missingPadding);
    for (const StatusMenuEntry& entry : m_menu) {
        addEntry(entry);
    }
}

void StatusPopupMenu::addEntry(const StatusMenuEntry& entry) {
    if (std::holds_alternative<StatusMenuSeparator>(entry)) {
        addSeparator();
    } else if (const auto* command = std::get_if<StatusMenuAction>(&entry)) {
        addCommand(*command);
    } else {
        addView(menuEntryView(entry));
    }
}

void StatusPopupMenu::addCommand(const StatusMenuAction& command) {
    QAction* action = addAction(commandIcon(command.iconName), command.title);
    action->setShortcut(command.key);
    action->setShortcutVisibleInContextMenu(true);
    action->setEnabled(command.isEnabled);
    // A menu triggers its actions when it has hidden itself already.
    connect(action, &QAction::triggered, this, [this, chosen = command.command] { Q_EMIT commandChosen(chosen); });
}

void StatusPopupMenu::addView(std::unique_ptr<MenuView> view) {
    MenuView* widget = view.release();
    widget->setPreferredWidth(MenuView::standardWidth - keyColumnWidth());
    auto* action = new QWidgetAction(this);
    // Never drawn: a screen reader finds the entries of a menu by their actions.
    QString name = widget->accessibleName();
    action->setText(name.replace(QLatin1Char('&'), QStringLiteral("&&")));
    action->setToolTip(widget->accessibleDescription());
    action->setDefaultWidget(widget);
    addAction(action);
    action->setEnabled(false);
    widget->setEnabled(true); // the action cannot be chosen, but the view still follows the mouse
}

/// A QMenu adds the width of the widest key equivalent to that of its widest item, whichever item that is.
int StatusPopupMenu::keyColumnWidth() const {
    int widest = 0;
    for (const StatusMenuEntry& entry : m_menu) {
        if (const auto* command = std::get_if<StatusMenuAction>(&entry)) {
            widest = std::max(widest, fontMetrics().horizontalAdvance(command->key.toString(QKeySequence::NativeText)));
        }
    }
    return widest;
}

void StatusPopupMenu::keyPressEvent(QKeyEvent* event) {
    const auto command = commandForKey(m_menu, event->keyCombination());
    if (!command) {
        if (event->key() == Qt::Key_Home || event->key() == Qt::Key_End) {
            activateEndCommand(event->key());
        } else {
            QMenu::keyPressEvent(event);
        }
        return;
    }
    close();
    Q_EMIT commandChosen(*command);
}

/// A menu of the toolkit goes round by the arrow keys alone.
void StatusPopupMenu::activateEndCommand(int key) {
    const QList<QAction*> all = actions();
    if (key == Qt::Key_Home) {
        const auto first = std::find_if(all.begin(), all.end(), canBeChosen);
        setActiveAction(first != all.end() ? *first : nullptr);
    } else {
        const auto last = std::find_if(all.rbegin(), all.rend(), canBeChosen);
        setActiveAction(last != all.rend() ? *last : nullptr);
    }
}

void StatusPopupMenu::mousePressEvent(QMouseEvent* event) {
    m_hasBeenPressed = true;
    // What is inside is not left to the toolkit: while the pointer has been in no window of the program, Qt 6.8 takes a
    // tap, or a click after few movements, for the end of the opening one, closes the menu and chooses nothing.
    if (rect().contains(event->position().toPoint())) {
        setActiveAction(actionAt(event->position().toPoint()));
        return;
    }
    QMenu::mousePressEvent(event);
    Q_EMIT dismissed();
}

void StatusPopupMenu::mouseReleaseEvent(QMouseEvent* event) {
    // Some panels open the menu on the press; the release that follows lands in the menu and chooses nothing.
    QAction* action = actionAt(event->position().toPoint());
    if (m_hasBeenPressed && canBeChosen(action)) {
        close();
        action->trigger();
    }
}

void StatusPopupMenu::hideEvent(QHideEvent* event) {
    QMenu::hideEvent(event);
    if (!event->spontaneous()) {
        Q_EMIT closed();
    }
}

StatusPopupWindow::StatusPopupWindow(const StatusMenu& menu)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_menu(new MenuFrame(this)) {
    auto* panel = new StatusMenuPanel(menu);
    connect(panel, &StatusMenuPanel::commandChosen, this, [this](StatusMenuCommand command) {
        close();
        Q_EMIT commandChosen(command);
    });
    m_menu->layout()->addWidget(panel);
    panel->setFocusPolicy(Qt::StrongFocus);
    panel->setFocus();
}

QSize StatusPopupWindow::menuSize() const {
    m_menu->ensurePolished();
    return m_menu->sizeHint();
}

void StatusPopupWindow::showMenu(std::optional<QPoint> corner) {
    setFixedSize(menuSize());
    if (corner) {
        move(*corner);
    }
    show();
}

void StatusPopupWindow::showOver(const QRect& area, QPoint corner) {
    beTransparent([this, corner] { return mapFromGlobal(corner); });
    setGeometry(area);
    show();
}

void StatusPopupWindow::showMaximizedOver(std::function<QPoint(QSize window)> menuCorner) {
    beTransparent([this, inWindow = std::move(menuCorner)] { return inWindow(size()); });
    showMaximized();
}

void StatusPopupWindow::beTransparent(std::function<QPoint()> menuCorner) {
    setAttribute(Qt::WA_TranslucentBackground);
    m_menu->setAutoFillBackground(true);
    m_menuCorner = std::move(menuCorner);
}

void StatusPopupWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_menu->setGeometry(QRect(m_menuCorner ? m_menuCorner() : QPoint(0, 0), menuSize()));
}

bool StatusPopupWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate && isVisible() && !m_isClosing) {
        dismiss();
    }
    return QWidget::event(event);
}

void StatusPopupWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void StatusPopupWindow::mousePressEvent(QMouseEvent* event) {
    if (!m_menu->geometry().contains(event->position().toPoint())) {
        dismiss();
    }
}

void StatusPopupWindow::dismiss() {
    close();
    Q_EMIT dismissed();
}

void StatusPopupWindow::closeEvent(QCloseEvent* event) {
    m_isClosing = true; // closing makes the window lose the focus, too
    QWidget::closeEvent(event);
}

void StatusPopupWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        Q_EMIT closed();
    }
}

} // namespace Varnel
