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

} // namespace

StatusPopupMenu::StatusPopupMenu(StatusMenu menu)
    : m_menu(std::move(menu)) {
    // The separators are part of the menu's order, also where two would meet or one stands last.
    setSeparatorsCollapsible(false);
    const int padding = std::max(0, smallestPadding - style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, this));
    setContentsMargins(0, padding, 0, padding);
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
        QMenu::keyPressEvent(event);
        return;
    }
    close();
    Q_EMIT commandChosen(*command);
}

void StatusPopupMenu::mousePressEvent(QMouseEvent* event) {
    m_hasBeenPressed = true;
    const bool isOutside = !rect().contains(event->position().toPoint());
    QMenu::mousePressEvent(event);
    if (isOutside) {
        Q_EMIT dismissed();
    }
}

void StatusPopupMenu::mouseReleaseEvent(QMouseEvent* event) {
    // Some panels open the menu on the press; the release that follows lands in the menu and chooses nothing.
    if (m_hasBeenPressed) {
        QMenu::mouseReleaseEvent(event);
    }
}

void StatusPopupMenu::hideEvent(QHideEvent* event) {
    QMenu::hideEvent(event);
    if (!event->spontaneous()) {
        Q_EMIT closed();
    }
}

StatusPopupWindow::StatusPopupWindow(const StatusMenu& menu)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
    auto* panel = new StatusMenuPanel(menu);
    connect(panel, &StatusMenuPanel::commandChosen, this, [this](StatusMenuCommand command) {
        close();
        Q_EMIT commandChosen(command);
    });
    auto* layout = new QVBoxLayout(this);
    const int frame = style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this);
    layout->setContentsMargins(frame, frame, frame, frame);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(panel);
    panel->setFocusPolicy(Qt::StrongFocus);
    panel->setFocus();
}

bool StatusPopupWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate && isVisible() && !m_isClosing) {
        close();
        Q_EMIT dismissed();
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

void StatusPopupWindow::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionFrame option;
    option.initFrom(this);
    option.lineWidth = style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this);
    QStylePainter(this).drawPrimitive(QStyle::PE_FrameMenu, option);
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
