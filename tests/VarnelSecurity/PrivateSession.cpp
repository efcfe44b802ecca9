#include "PrivateSession.h"

#include "../Support/EventLoop.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDir>
#include <QStandardPaths>

#include <csignal>

namespace Varnel::Testing {

namespace {
constexpr char busConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <servicedir>%1/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
)";

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("Cannot write %s", qPrintable(path));
    }
}
} // namespace

QString PrivateSession::missingProgram() {
    for (const char* program : {"dbus-daemon", "gnome-keyring-daemon", "secret-tool"}) {
        if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty()) {
            return QLatin1String(program);
        }
    }
    return {};
}

PrivateSession::PrivateSession() {
    QDir().mkdir(path("services"));
    write(path("services/org.gnome.keyring.SystemPrompter.service"),
          "[D-BUS Service]\nName=org.gnome.keyring.SystemPrompter\nExec=/bin/touch " + path("asked").toUtf8() + '\n');
    write(path("bus.conf"), QString::fromLatin1(busConfiguration).arg(m_home.path()).toUtf8());
    start(m_bus, QStringLiteral("dbus-daemon"),
          {QStringLiteral("--config-file=") + path("bus.conf"), QStringLiteral("--nofork"),
           QStringLiteral("--print-address")});
    m_bus.waitForReadyRead();
    const QByteArray address = m_bus.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    m_connection = QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("private session"));
}

PrivateSession::~PrivateSession() {
    stopKeyring();
    m_bus.terminate();
    m_bus.waitForFinished();
}

void PrivateSession::startKeyring() {
    QDir(path("data")).removeRecursively();
    m_keyring = std::make_unique<QProcess>();
    start(*m_keyring, QStringLiteral("gnome-keyring-daemon"),
          {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")}, "\n");
    if (!waitUntil([this] { return isSecretServiceOwned(); })) {
        qFatal("The keyring daemon did not take its name");
    }
}

void PrivateSession::stopKeyring() {
    if (m_keyring) {
        m_keyring->kill();
        m_keyring->waitForFinished();
        m_keyring.reset();
        waitUntil([this] { return !isSecretServiceOwned(); });
    }
}

void PrivateSession::lockKeyring() {
    const QDBusObjectPath login(QStringLiteral("/org/freedesktop/secrets/collection/login"));
    call("org.freedesktop.secrets", "/org/freedesktop/secrets", "org.freedesktop.Secret.Service", "Lock",
         {QVariant::fromValue(QList<QDBusObjectPath>{login})});
}

void PrivateSession::suspendKeyring() {
    ::kill(static_cast<pid_t>(m_keyring->processId()), SIGSTOP);
}

void PrivateSession::setSecretServiceStartable(bool startable) {
    const QString file = path("services/org.freedesktop.secrets.service");
    QFile::remove(file);
    if (startable) {
        write(file, "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/bin/false\n");
    }
    call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReloadConfig", {});
}

QByteArray PrivateSession::run(const QString& program, const QStringList& arguments, const QByteArray& input) {
    QProcess process;
    start(process, program, arguments, input);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

QDBusMessage PrivateSession::call(const char* service, const char* object, const char* interface, const char* method,
                                  const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(object),
                                                          QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    return m_connection.call(message);
}

void PrivateSession::start(QProcess& process, const QString& program, const QStringList& arguments,
                           const QByteArray& input) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), m_home.path());
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        environment.insert(QLatin1String(name), m_home.path());
    }
    environment.insert(QStringLiteral("XDG_DATA_HOME"), path("data"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForStarted();
}

bool PrivateSession::isSecretServiceOwned() {
    const QDBusMessage reply = call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "NameHasOwner", {QStringLiteral("org.freedesktop.secrets")});
    return reply.arguments().value(0).toBool();
}

} // namespace Varnel::Testing
