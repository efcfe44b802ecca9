#include <VarnelPreferences/PreferencesWindow.h>

#include <VarnelPreferences/AccountPane.h>
#include <VarnelPreferences/GeneralPane.h>
#include <VarnelPreferences/NotificationsPane.h>
#include <VarnelPreferences/PaneTabs.h>

#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QVBoxLayout>

namespace Varnel {

PreferencesWindow::PreferencesWindow(std::unique_ptr<PreferencesForm> form, PreferencesInitialTab initialTab)
    : m_form(form.release())
    , m_tabs(new PaneTabs)
    , m_general(new GeneralPane(*m_form))
    , m_account(new AccountPane(*m_form))
    , m_notifications(new NotificationsPane(*m_form)) {
    m_form->setParent(this);
    // The application's display name is added behind it.
    setWindowTitle(tr("Settings"));
    setAttribute(Qt::WA_QuitOnClose, false);
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(m_tabs);
    buildPanes();
    buildShortcuts();
    m_tabs->setCurrentIndex(static_cast<int>(initialTab));
}

void PreferencesWindow::buildPanes() {
    m_tabs->addTab(m_general, tr("&General"));
    m_tabs->addTab(m_account, tr("Acc&ount"));
    m_tabs->addTab(m_notifications, tr("&Notifications"));
}

void PreferencesWindow::buildShortcuts() {
    for (const QKeySequence::StandardKey key : {QKeySequence::Close, QKeySequence::Cancel}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    }
}

void PreferencesWindow::setApplicationMenu(QMenu* menu) {
    if (!m_menuBar) {
        m_menuBar = new QMenuBar;
        layout()->setMenuBar(m_menuBar);
    }
    m_menuBar->addMenu(menu);
}

void PreferencesWindow::focusFirstField() {
    switch (static_cast<PreferencesInitialTab>(m_tabs->currentIndex())) {
    case PreferencesInitialTab::general:
        return m_general->focusFirstField();
    case PreferencesInitialTab::account:
        return m_account->focusFirstField();
    case PreferencesInitialTab::notifications:
        return m_notifications->focusFirstField();
    }
}

void PreferencesWindow::showAndFocus() {
    if (!isVisible()) {
        focusFirstField();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void PreferencesWindow::closeQuietly() {
    m_isClosingQuietly = true;
    close();
    m_isClosingQuietly = false;
}

void PreferencesWindow::closeEvent(QCloseEvent* event) {
    m_general->finishEditing();
    event->accept();
    if (!m_isClosingQuietly) {
        m_form->reportClosed();
    }
}

} // namespace Varnel
