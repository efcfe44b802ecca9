#include "FakeItemWatcher.h"

namespace Varnel::Testing {

FakeItemWatcher::FakeItemWatcher(PrivateBus& bus, Manner manner)
    : m_bus(bus)
    , m_connection(bus.connect())
    , m_manner(manner) {
    m_connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
    m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

FakeItemWatcher::~FakeItemWatcher() {
    m_bus.disconnect(m_connection);
}

void FakeItemWatcher::bringHost() {
    m_manner = Manner::ordinary;
    Q_EMIT StatusNotifierHostRegistered();
}

void FakeItemWatcher::RegisterStatusNotifierItem(const QString& service) {
    if (m_manner == Manner::refusing) {
        sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no items here"));
    } else {
        registeredServices << service;
    }
}

} // namespace Varnel::Testing
