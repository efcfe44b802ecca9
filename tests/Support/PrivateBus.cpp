#include "PrivateBus.h"

#include "EventLoop.h"

#include <QDBusPendingCall>
#include <QFile>

namespace Varnel::Testing {

namespace {

const BusObject theBus{QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                       QStringLiteral("org.freedesktop.DBus")};

constexpr char configuration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>%1</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
)";

void write(const QString& path, const QString& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0) {
        qFatal("Cannot write %s", qPrintable(path));
    }
}

} // namespace

PrivateBus::PrivateBus() {
    const QString file = m_folder.filePath(QStringLiteral("bus.conf"));
    write(file, QString::fromLatin1(configuration).arg(m_folder.path()));
    m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + file, QStringLiteral("--nofork"),
                                                   QStringLiteral("--print-address")});
    if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead()) {
        qFatal("dbus-daemon did not start: %s", qPrintable(m_daemon.errorString()));
    }
    m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
    m_own = connect();
}

PrivateBus::~PrivateBus() {
    for (const QString& name : std::as_const(m_connections)) {
        QDBusConnection::disconnectFromBus(name);
    }
    end();
}

void PrivateBus::end() {
    m_daemon.kill();
    m_daemon.waitForFinished();
}

void PrivateBus::becomeSessionBus() const {
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toLatin1());
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

void PrivateBus::setStartable(const QString& service, const QString& program) {
    const QString file = m_folder.filePath(service + QStringLiteral(".service"));
    QFile::remove(file);
    if (!program.isEmpty()) {
        write(file, QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n").arg(service, program));
    }
    ask(m_own, theBus, "ReloadConfig");
}

bool PrivateBus::waitForOwner(const QString& service, bool isOwned) {
    return waitUntil(
        [&] { return ask(m_own, theBus, "NameHasOwner", {service}).arguments().value(0).toBool() == isOwned; });
}

QDBusMessage PrivateBus::ask(const QDBusConnection& from, const BusObject& asked, const char* method,
                             const QVariantList& arguments) {
    QDBusMessage question =
        QDBusMessage::createMethodCall(asked.service, asked.path, asked.interface, QLatin1String(method));
    question.setArguments(arguments);
    const QDBusPendingCall call = from.asyncCall(question);
    waitUntil([&call] { return call.isFinished(); });
    return call.reply();
}

} // namespace Varnel::Testing
