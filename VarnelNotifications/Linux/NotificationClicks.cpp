#include <VarnelNotifications/Linux/NotificationClicks.h>

#include <QDBusConnection>

namespace Varnel {

NotificationClicks::NotificationClicks() {
    // Without a service name: to follow its owner, QtDBus would ask the bus for it and wait.
    const QString path = QStringLiteral("/org/freedesktop/Notifications");
    const QString interface = QStringLiteral("org.freedesktop.Notifications");
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, path, interface, QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(QDBusMessage)));
    bus.connect({}, path, interface, QStringLiteral("NotificationClosed"), this,
                SLOT(onNotificationClosed(QDBusMessage)));
}

void NotificationClicks::noteShown(const QDBusMessage& reply) {
    if (m_server != reply.service()) {
        m_server = reply.service();
        m_shown.clear();
    }
    m_shown.insert(reply.arguments().constFirst().toUInt());
}

void NotificationClicks::onActionInvoked(const QDBusMessage& signal) {
    if (isOurs(signal) && signal.arguments().value(1).toString() == QLatin1String("default") && m_clicked) {
        m_clicked();
    }
}

void NotificationClicks::onNotificationClosed(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        m_shown.remove(signal.arguments().constFirst().toUInt());
    }
}

bool NotificationClicks::isOurs(const QDBusMessage& signal) const {
    return signal.service() == m_server && m_shown.contains(signal.arguments().value(0).toUInt());
}

} // namespace Varnel
