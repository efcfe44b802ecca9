#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <VarnelStatusMenu/Menu/StatusMenuPanel.h>
#include <VarnelStatusMenu/Window/DayPane.h>

#include <QHBoxLayout>
#include <QKeyEvent>

#include <utility>

namespace Varnel {

OutputWindow::OutputWindow(const StatusItemContent& content, std::weak_ptr<OutputSource> source)
    : m_source(std::move(source)) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const std::shared_ptr<OutputSource> days = m_source.lock();
    if (days) {
        m_days = new DayPane(m_source);
        layout->addWidget(m_days, 1);
    } else {
        layout->setSizeConstraint(QLayout::SetFixedSize);
    }
    m_panel = new StatusMenuPanel(besideDays(content.menu));
    layout->addWidget(m_panel, 0, Qt::AlignTop);
    m_panel->setFocusPolicy(Qt::StrongFocus);
    m_panel->setFocus();
    connect(m_panel, &StatusMenuPanel::commandChosen, this, &OutputWindow::commandChosen);
    setContent(content);
    if (days) {
        restoreGeometry(days->windowGeometry());
    }
}

/// The chart stands large beside the rows.
StatusMenu OutputWindow::besideDays(const StatusMenu& menu) const {
    const bool hasChart = !menu.empty() && std::holds_alternative<StatusMenuChart>(menu.front());
    constexpr int chartAndSeparator = 2;
    return m_days != nullptr && hasChart ? StatusMenu(menu.begin() + chartAndSeparator, menu.end()) : menu;
}

void OutputWindow::setContent(const StatusItemContent& content) {
    setWindowTitle(content.title);
    setAccessibleDescription(content.outdatedLine.value_or(QString()));
    m_panel->setMenu(besideDays(content.menu));
    if (m_days != nullptr) {
        m_days->refresh();
    }
}

void OutputWindow::setStandsForItem(bool standsForItem) {
    if (std::exchange(m_standsForItem, standsForItem) != standsForItem) {
        Q_EMIT standsForItemChanged();
    }
}

void OutputWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void OutputWindow::showEvent(QShowEvent* event) {
    if (m_days != nullptr && !isMinimized()) {
        m_days->noteOpening();
    }
    QWidget::showEvent(event);
}

void OutputWindow::hideEvent(QHideEvent* event) {
    if (const std::shared_ptr<OutputSource> source = m_source.lock(); source && !isMinimized()) {
        source->keepWindowGeometry(saveGeometry());
    }
    QWidget::hideEvent(event);
}

void OutputWindow::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void OutputWindow::showInTaskbar() {
    if (!testAttribute(Qt::WA_Resized)) {
        // A window without a size is given one as it is shown, and that makes it an ordinary one again.
        adjustSize();
    }
    showMinimized();
}

} // namespace Varnel
