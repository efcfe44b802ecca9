#pragma once

#include <VarnelPreferences/PreferencesForm.h>
#include <VarnelPreferences/PreferencesInitialTab.h>

#include <QWidget>

#include <memory>

class QMenu;
class QMenuBar;

namespace Varnel {

class AccountPane;
class GeneralPane;
class NotificationsPane;
class PaneTabs;

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

} // namespace Varnel
