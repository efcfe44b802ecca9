#pragma once

#include "PrivateBus.h"

#include <QDBusContext>
#include <QObject>

namespace Varnel::Testing {

/// A panel's org.kde.StatusNotifierWatcher on a bus, from its construction to its destruction.
class FakeItemWatcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    enum class Manner { ordinary, withoutHost, refusing };

    explicit FakeItemWatcher(PrivateBus& bus, Manner manner = Manner::ordinary);
    ~FakeItemWatcher() override;

    bool hasHost() const { return m_manner != Manner::withoutHost; }
    void bringHost();

    QStringList registeredServices;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service);

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    PrivateBus& m_bus;
    QDBusConnection m_connection;
    Manner m_manner;
};

} // namespace Varnel::Testing
