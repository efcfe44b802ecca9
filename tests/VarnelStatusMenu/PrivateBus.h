#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStringList>

namespace Varnel::Testing {

/// A message bus of the test's own. Every connection made from it ends with it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// A new connection, as of another program.
    QDBusConnection connect();
    void disconnect(const QDBusConnection& connection);

    /// The reply, while the event loop runs: the one asked may live in this process too.
    static QDBusMessage ask(const QDBusConnection& from, const QDBusMessage& question);

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace Varnel::Testing
