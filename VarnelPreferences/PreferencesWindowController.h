#pragma once

#include <VarnelPreferences/ConnectionState.h>
#include <VarnelPreferences/PreferencesHandlers.h>
#include <VarnelShared/Clock.h>

#include <memory>

class QMenu;
class QWidget;

namespace Varnel {

class PreferencesWindow;

/// The preferences window as its owner sees it: made for one draft, shown, told of changes, closed and dropped.
/// General and Notifications hand each edit on by themselves, the Account pane saves with its button.
class PreferencesWindowController {
public:
    /// The window is not shown yet. `timers` must outlive the controller.
    PreferencesWindowController(const PreferencesDraft& draft, bool isConnected, bool hasConnectionError,
                                PreferencesInitialTab initialTab, PreferencesHandlers handlers, TimerFactory& timers);

    /// May run at any time, also within one of the handlers or a choice in the window's own menu; the window goes
    /// from the screen at once. No handler is called from then on, so an edit that is still pending is lost unless
    /// `close` came first. A save that is still going on runs to its end.
    ~PreferencesWindowController();
    PreferencesWindowController(const PreferencesWindowController&) = delete;
    PreferencesWindowController& operator=(const PreferencesWindowController&) = delete;

    /// Shows the window in front with the focus on the first useful field; one that is open keeps its focus.
    void showWindowAndFocus();

    /// Hands on a pending edit (within the call) and closes the window. Without effect on one that is not open.
    void close();

    /// `errorMessage` is shown behind "Connection error"; it may be empty.
    void updateConnectionState(bool isConnected, bool hasConnectionError, const QString& errorMessage = {});

    /// The same with all that there is to say.
    void updateConnectionState(const ConnectionState& connection);

    /// Says under the connection what could not be kept or removed, each with the next step, until the user saves or
    /// signs out again; none takes the line away. With a password that could not be deleted the sign-out stays
    /// possible.
    void showAccountNotices(AccountNotices notices);

    /// The line under the notification switches. Until the first call there is none.
    void setNotificationPermission(NotificationPermission permission);

    /// Says under the dock switch that this desktop offers no such entry, or no longer.
    void setDockIconRefused(bool isRefused);

    /// Shows the description under the launch switch and puts the switch to `actualState`, which is not an edit.
    /// May be called within the auto-save handler. The description goes with the next change of the switch.
    void showLaunchAtLoginError(const QString& description, bool actualState);

    /// Adds the menu to the window's menu bar. It stays the caller's, must outlive the window and may stand in
    /// several.
    void setApplicationMenu(QMenu* menu);

    /// For what a desktop does with whole windows; never null.
    QWidget* window() const;

private:
    PreferencesWindow* m_window; ///< deleted from the event loop, because the controller may die within its events
};

} // namespace Varnel
