#include "PrivateBus.h"

#include "../Support/EventLoop.h"

#include <QDBusPendingCall>

#include <algorithm>

namespace Varnel::Testing {

PrivateBus::PrivateBus() {
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--address=unix:tmpdir=/tmp")});
    if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead()) {
        qFatal("dbus-daemon did not start: %s", qPrintable(m_daemon.errorString()));
    }
    m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& name : std::as_const(m_connections)) {
        QDBusConnection::disconnectFromBus(name);
    }
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect() {
    static int count = 0;
    m_connections << QStringLiteral("private-%1").arg(++count);
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

void PrivateBus::disconnect(const QDBusConnection& connection) {
    m_connections.removeAll(connection.name());
    QDBusConnection::disconnectFromBus(connection.name());
}

QDBusMessage PrivateBus::ask(const QDBusConnection& from, const QDBusMessage& question) {
    const QDBusPendingCall call = from.asyncCall(question);
    waitUntil([&call] { return call.isFinished(); });
    return call.reply();
}

} // namespace Varnel::Testing
