#pragma once

#include <QString>

namespace Varnel {

/// What stands between the notification switches and a notification on the screen.
enum class NotificationPermission {
    notInstalled, ///< only the installed application has a name to notify under
    noService,    ///< the desktop runs no notification service
    denied,
    authorized,
};

/// One line for the user: the state, and what to do about it where there is something to do.
QString notificationPermissionText(NotificationPermission permission);

} // namespace Varnel
