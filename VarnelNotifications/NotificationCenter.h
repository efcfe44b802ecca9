#pragma once

#include <VarnelShared/Result.h>

#include <QCoroTask>

#include <QFlags>
#include <QString>

#include <functional>

namespace Varnel {

/// What the platform says about the permission to show notifications.
enum class NotificationAuthorizationStatus { notDetermined, denied, authorized, provisional, ephemeral };

enum class NotificationAuthorizationOption { badge = 1, sound = 2, alert = 4 };
Q_DECLARE_FLAGS(NotificationAuthorizationOptions, NotificationAuthorizationOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(NotificationAuthorizationOptions)

/// One notification, shown at once with the default sound.
struct NotificationRequest {
    QString identifier; ///< unique, so that no notification replaces another
    QString title;
    QString body; ///< plain text

    bool operator==(const NotificationRequest&) const = default;
};

/// Shows notifications on the desktop. A port. Whoever awaits one of its tasks keeps it alive until the task has ended;
/// every task ends within seconds.
class NotificationCenter {
public:
    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    virtual ~NotificationCenter() = default;

    virtual QCoro::Task<NotificationAuthorizationStatus> authorizationStatus() = 0;

    /// Asks the user where the platform does such a thing, and says whether permission was granted.
    virtual QCoro::Task<Result<bool>> requestAuthorization(NotificationAuthorizationOptions options) = 0;

    virtual QCoro::Task<Result<void>> add(NotificationRequest request) = 0;

    /// Calls `activated` from now on whenever the user clicks one of the notifications of this centre.
    virtual void setActivationHandler(std::function<void()> activated) = 0;
};

} // namespace Varnel
