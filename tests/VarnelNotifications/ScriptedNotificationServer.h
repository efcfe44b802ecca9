#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <optional>
#include <vector>

namespace Varnel::Testing {

/// Owns the name of the notification server on the session bus, over a connection of its own.
class ScriptedNotificationServer final : public QDBusVirtualObject {
public:
    /// Without `capabilities` it takes every call and never answers.
    explicit ScriptedNotificationServer(std::optional<QStringList> capabilities)
        : m_capabilities(std::move(capabilities)) {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    ~ScriptedNotificationServer() override { QDBusConnection::disconnectFromBus(QStringLiteral("server")); }

    std::vector<QDBusMessage> notified;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        if (call.member() == QLatin1String("Notify")) {
            notified.push_back(call);
        }
        if (m_capabilities) {
            const bool isNotify = call.member() == QLatin1String("Notify");
            connection.send(call.createReply(isNotify ? QVariant(uint(notified.size())) : QVariant(*m_capabilities)));
        }
        return true;
    }

private:
    std::optional<QStringList> m_capabilities;
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("server"));
};

} // namespace Varnel::Testing
