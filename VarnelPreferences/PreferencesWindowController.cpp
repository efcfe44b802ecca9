#include <VarnelPreferences/PreferencesWindowController.h>

#include <VarnelPreferences/AccountPane.h>
#include <VarnelPreferences/GeneralPane.h>
#include <VarnelPreferences/NotificationsPane.h>

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
/// Tabs that ask for the height of the selected pane instead of the tallest one's. The width is that of the widest, so
/// that the window changes its height alone.
class PaneTabs final : public QTabWidget {
public:
    PaneTabs() {
        connect(this, &QTabWidget::currentChanged, this, [this] { updateGeometry(); });
    }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};

QSize PaneTabs::sizeHint() const {
    QSize size = QTabWidget::sizeHint();
    if (!currentWidget()) {
        return size;
    }
    int tallest = 0;
    for (int index = 0; index < count(); ++index) {
        tallest = std::max(tallest, widget(index)->sizeHint().height());
    }
    size.rheight() -= tallest - currentWidget()->sizeHint().height();
    return size;
}

} // namespace

/// The window with the three panes, always of the size that the selected pane needs. Ctrl+W and Esc close it,
/// Ctrl+Tab goes to the next pane.
class PreferencesWindow final : public QWidget {
    Q_OBJECT

public:
    PreferencesWindow(std::unique_ptr<PreferencesForm> form, PreferencesInitialTab initialTab);

    PreferencesForm& form() { return *m_form; }

    /// The menu stays the caller's and must outlive the window.
    void setApplicationMenu(QMenu* menu);

    /// Shows the window with the focus on the first useful field; one that is open keeps its focus. Brings it to the
    /// front in both cases.
    void showAndFocus();

    /// Closes the window without telling that the user did.
    void closeQuietly();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildPanes();
    void buildShortcuts();
    void focusFirstField();

    PreferencesForm* m_form; ///< a child
    PaneTabs* m_tabs;
    GeneralPane* m_general;
    AccountPane* m_account;
    NotificationsPane* m_notifications;
    QMenuBar* m_menuBar = nullptr;
    bool m_isClosingQuietly = false;
};

namespace {
/// The toolkit tells only windows of its own class for them as dialogs.
QAccessibleInterface* dialogAccess(const QString& className, QObject* object) {
    if (className != QLatin1String(PreferencesWindow::staticMetaObject.className())) {
        return nullptr;
    }
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Dialog);
}

void makeWindowAccessible() {
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(dialogAccess);
        return true;
    }();
}
} // namespace

PreferencesWindow::PreferencesWindow(std::unique_ptr<PreferencesForm> form, PreferencesInitialTab initialTab)
    : m_form(form.release())
    , m_tabs(new PaneTabs)
    , m_general(new GeneralPane(*m_form))
    , m_account(new AccountPane(*m_form))
    , m_notifications(new NotificationsPane(*m_form)) {
    makeWindowAccessible();
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

PreferencesWindowController::PreferencesWindowController(const PreferencesDraft& draft, bool isConnected,
                                                         bool hasConnectionError, PreferencesInitialTab initialTab,
                                                         PreferencesHandlers handlers, TimerFactory& timers)
    : m_window(
          new PreferencesWindow(std::make_unique<PreferencesForm>(draft, std::move(handlers), timers), initialTab)) {
    updateConnectionState(isConnected, hasConnectionError);
}

PreferencesWindowController::~PreferencesWindowController() {
    m_window->form().detach();
    m_window->hide();
    m_window->deleteLater();
}

void PreferencesWindowController::showWindowAndFocus() {
    m_window->showAndFocus();
}

void PreferencesWindowController::close() {
    m_window->closeQuietly();
}

void PreferencesWindowController::updateConnectionState(bool isConnected, bool hasConnectionError,
                                                        const QString& errorMessage) {
    ConnectionState connection;
    connection.isConnected = isConnected;
    connection.hasError = hasConnectionError;
    connection.errorMessage = hasConnectionError ? errorMessage : QString();
    updateConnectionState(connection);
}

void PreferencesWindowController::updateConnectionState(const ConnectionState& connection) {
    m_window->form().updateConnection(connection);
}

void PreferencesWindowController::showAccountNotices(AccountNotices notices) {
    m_window->form().setAccountNotices(notices);
}

void PreferencesWindowController::setNotificationPermission(NotificationPermission permission) {
    m_window->form().setNotificationPermission(permission);
}

void PreferencesWindowController::setDockIconRefused(bool isRefused) {
    m_window->form().setDockIconRefused(isRefused);
}

void PreferencesWindowController::showLaunchAtLoginError(const QString& description, bool actualState) {
    m_window->form().refuseLaunchAtLogin(description, actualState);
}

void PreferencesWindowController::setApplicationMenu(QMenu* menu) {
    m_window->setApplicationMenu(menu);
}

QWidget* PreferencesWindowController::window() const {
    return m_window;
}

} // namespace Varnel

#include "PreferencesWindowController.moc"
