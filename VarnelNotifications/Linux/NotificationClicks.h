#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QSet>

#include <functional>

namespace Varnel {

/// Tells the clicks on our own notifications from those on everybody else's: the server sends its signals to all.
class NotificationClicks : public QObject {
    Q_OBJECT

public:
    /// Listens on the session bus at once.
    NotificationClicks();

    /// Notes what the server `reply` came from has shown: a later click on the notification in it is ours.
    void noteShown(const QDBusMessage& reply);

    void setHandler(std::function<void()> clicked) { m_clicked = std::move(clicked); }

private Q_SLOTS:
    void onActionInvoked(const QDBusMessage& signal);
    void onNotificationClosed(const QDBusMessage& signal);

private:
    bool isOurs(const QDBusMessage& signal) const;

    QString m_server; ///< the bus's own name of the server; a new server counts its notifications anew
    QSet<uint> m_shown;
    std::function<void()> m_clicked;
};

} // namespace Varnel
