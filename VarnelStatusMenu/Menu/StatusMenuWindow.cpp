#include <VarnelStatusMenu/Menu/StatusMenuWindow.h>

#include <VarnelStatusMenu/Menu/StatusMenuPanel.h>

#include <QKeyEvent>
#include <QVBoxLayout>

#include <utility>

namespace Varnel {

StatusMenuWindow::StatusMenuWindow(const StatusItemContent& content)
    : m_panel(new StatusMenuPanel(content.menu)) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(m_panel);
    m_panel->setFocusPolicy(Qt::StrongFocus);
    m_panel->setFocus();
    connect(m_panel, &StatusMenuPanel::commandChosen, this, &StatusMenuWindow::commandChosen);
    setContent(content);
}

void StatusMenuWindow::setContent(const StatusItemContent& content) {
    setWindowTitle(content.title);
    setAccessibleDescription(content.outdatedLine.value_or(QString()));
    m_panel->setMenu(content.menu);
}

void StatusMenuWindow::setStandsForItem(bool standsForItem) {
    if (std::exchange(m_standsForItem, standsForItem) != standsForItem) {
        Q_EMIT standsForItemChanged();
    }
}

void StatusMenuWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void StatusMenuWindow::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void StatusMenuWindow::showInTaskbar() {
    // A window without a size is given one as it is shown, and that makes it an ordinary one again.
    adjustSize();
    showMinimized();
}

} // namespace Varnel
