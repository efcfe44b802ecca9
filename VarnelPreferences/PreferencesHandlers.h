#pragma once

#include <VarnelShared/AppSettings.h>

#include <QCoroTask>
#include <QFlags>

#include <functional>

namespace Varnel {

/// The pane that the preferences window opens on. The values are the positions of the tabs.
enum class PreferencesInitialTab { general = 0, account = 1, notifications = 2 };

/// What stands between the notification switches and a notification on the screen.
enum class NotificationPermission {
    notInstalled, ///< only the installed application has a name to notify under
    noService,    ///< the desktop runs no notification service
    denied,
    authorized,
};

/// What the Account pane says under the connection because something could not be kept or removed.
enum class AccountNotice { passwordNotStored = 1, passwordNotDeleted = 2, settingsNotStored = 4 };
Q_DECLARE_FLAGS(AccountNotices, AccountNotice)
Q_DECLARE_OPERATORS_FOR_FLAGS(AccountNotices)

/// What the preferences window asks of its owner. All are called on the main thread and may destroy the window's
/// controller. `save`, `autoSave` and `signOut` must be set.
struct PreferencesHandlers {
    /// The explicit save of the Account pane: true when a session exists afterwards. Called on the spot; the window
    /// stays busy until the task ends or the user cancels, and asks for no second save before that. The window may be
    /// gone by then. A plain function that calls a coroutine, never itself a coroutine when it captures anything.
    std::function<QCoro::Task<bool>(PreferencesDraft)> save;

    /// One edit of the General or Notifications pane. The account fields of the draft are those of the last explicit
    /// save, whatever stands in the Account pane meanwhile.
    std::function<void(const PreferencesDraft&)> autoSave;

    std::function<void()> signOut;

    /// The user wants no end of the sign-in that goes on, whoever has begun it. After it another save may come, while
    /// the task of the one before still runs.
    std::function<void()> cancelSignIn = [] {};

    /// The user has closed the window, and every edit was handed on. Not called for `close()` or destruction.
    std::function<void()> closed = {};
};

} // namespace Varnel
