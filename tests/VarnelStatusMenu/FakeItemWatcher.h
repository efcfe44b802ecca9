#pragma once

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <QDBusContext>
#include <QObject>

namespace Varnel::Testing {

/// A panel's org.kde.StatusNotifierWatcher on a bus, from its construction to its destruction.
class FakeItemWatcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    explicit FakeItemWatcher(PrivateBus& bus, bool withHost = true)
        : hasHost(withHost)
        , m_bus(bus) {
        m_connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
        m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }
    ~FakeItemWatcher() override { m_bus.disconnect(m_connection); }

    bool waitForItem() {
        return waitUntil([this] { return !registered.empty(); });
    }

    bool hasHost;
    bool isRefusing = false;
    QStringList registered;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        if (isRefusing) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no items here"));
        } else {
            registered << service;
        }
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    PrivateBus& m_bus;
    QDBusConnection m_connection = m_bus.connect();
};

} // namespace Varnel::Testing
