#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace Varnel::Testing {

/// What a call over a bus goes to.
struct BusObject {
    QString service;
    QString path;
    QString interface;
};

/// A message bus of the test's own, which starts nothing but what the test allows. Every connection made from it ends
/// with it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// From now on this process, and what it starts, takes it for the session's bus. A process has one for its life.
    void becomeSessionBus() const;

    /// A new connection, as of another program.
    QDBusConnection connect();
    void disconnect(const QDBusConnection& connection);

    /// The bus could start `service` with `program` from now on; with an empty one it no longer can.
    void setStartable(const QString& service, const QString& program);

    /// The bus dies, and what is connected with it is not told by anybody.
    void end();

    /// False when five seconds have passed without it.
    bool waitForOwner(const QString& service, bool isOwned = true);

    /// The reply, while the event loop runs: the one asked may live in this process too.
    static QDBusMessage ask(const QDBusConnection& from, const BusObject& asked, const char* method,
                            const QVariantList& arguments = {});

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
    QDBusConnection m_own{QString()};
};

} // namespace Varnel::Testing
