#pragma once

#include <VarnelNotifications/NotificationCenter.h>

#include <QDBusMessage>
#include <QObject>
#include <QSet>

#include <functional>

namespace Varnel {

/// How the notification server names and draws the program.
struct NotificationSender {
    QString applicationName;
    QString desktopEntry; ///< the name of the desktop file, without ".desktop"
    QString icon;         ///< the name of a themed icon, or a path
};

/// Why a notification was not shown: what the bus or the server said.
struct NotificationServerError {
    QString description;

    QString localizedDescription() const { return description; }
};

/// The desktop's notification server, org.freedesktop.Notifications on the session bus. Nothing blocks, and nothing is
/// logged, where there is no server or it does not answer: every call to it gives up after a few seconds.
///
/// Desktops ask nobody for permission, so the answer is whether there is a server: `authorized` when one is on the bus
/// or the bus can start one, asked anew each time, and `notDetermined` otherwise.
///
/// Clicks on our own notifications are told from those on everybody else's: the server sends its signals to all.
class FreedesktopNotificationCenter final : public QObject, public NotificationCenter {
    Q_OBJECT

public:
    /// Listens on the session bus at once.
    explicit FreedesktopNotificationCenter(NotificationSender sender);

    QCoro::Task<NotificationAuthorizationStatus> authorizationStatus() override;
    QCoro::Task<Result<bool>> requestAuthorization(NotificationAuthorizationOptions options) override;

    /// Fails with `NotificationServerError`. The identifier stays with the caller: the server numbers what it shows.
    QCoro::Task<Result<void>> add(NotificationRequest request) override;

    void setActivationHandler(std::function<void()> activated) override;

private Q_SLOTS:
    void onActionInvoked(const QDBusMessage& signal);
    void onActivationToken(const QDBusMessage& signal);
    void onNotificationClosed(const QDBusMessage& signal);

private:
    void noteShown(const QString& server, uint notification);
    bool isOurs(const QDBusMessage& signal) const;

    NotificationSender m_sender;
    QString m_server; ///< the bus's own name of the server; a new server counts its notifications anew
    QSet<uint> m_shown;
    std::function<void()> m_activated;
};

} // namespace Varnel
