#include <VarnelStatusMenu/StatusPopupWindow.h>

#include <VarnelStatusMenu/StatusMenuPanel.h>

#include <QCloseEvent>
#include <QHideEvent>
#include <QKeyEvent>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <QVBoxLayout>

namespace Varnel {

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
