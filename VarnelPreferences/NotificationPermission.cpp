#include <VarnelPreferences/NotificationPermission.h>

namespace Varnel {

QString notificationPermissionText(NotificationPermission permission) {
    switch (permission) {
    case NotificationPermission::notInstalled:
        return QStringLiteral("Varnel shows notifications once it is installed.");
    case NotificationPermission::noService:
        return QStringLiteral("No notification service is running, so nothing can be shown. Start the notification "
                              "service of your desktop, or install one.");
    case NotificationPermission::denied:
        return QStringLiteral("Notifications are blocked. Allow them for Varnel in the notification settings of your "
                              "desktop.");
    case NotificationPermission::authorized:
        return QStringLiteral("Notifications are allowed.");
    }
    return {};
}

} // namespace Varnel
