#include "KeyringSession.h"

#include <QDBusObjectPath>
#include <QDir>

#include <csignal>

namespace Varnel::Testing {

namespace {
const BusObject secretService{QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
                              QStringLiteral("org.freedesktop.Secret.Service")};
}

KeyringSession::KeyringSession() {
    m_bus.becomeSessionBus();
    m_bus.setStartable(QStringLiteral("org.gnome.keyring.SystemPrompter"),
                       QStringLiteral("/bin/touch ") + path("asked"));
}

void KeyringSession::startKeyring() {
    QDir(path("data")).removeRecursively();
    start(m_keyring, QStringLiteral("gnome-keyring-daemon"),
          {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")}, "\n");
    if (!m_bus.waitForOwner(secretService.service)) {
        qFatal("The keyring daemon did not take its name");
    }
}

void KeyringSession::stopKeyring() {
    m_keyring.kill();
    m_keyring.waitForFinished();
    m_bus.waitForOwner(secretService.service, false);
}

void KeyringSession::lockKeyring() {
    const QDBusObjectPath login(QStringLiteral("/org/freedesktop/secrets/collection/login"));
    PrivateBus::ask(m_bus.connect(), secretService, "Lock", {QVariant::fromValue(QList<QDBusObjectPath>{login})});
}

void KeyringSession::suspendKeyring() {
    ::kill(static_cast<pid_t>(m_keyring.processId()), SIGSTOP);
}

void KeyringSession::resumeKeyring() {
    ::kill(static_cast<pid_t>(m_keyring.processId()), SIGCONT);
}

void KeyringSession::setSecretServiceStartable(const QString& command) {
    const QString program = QStringLiteral("/bin/sh -c \"export HOME=%1 XDG_DATA_HOME=%2 XDG_RUNTIME_DIR=%1; %3\"");
    m_bus.setStartable(secretService.service,
                       command.isEmpty() ? QString() : program.arg(m_home.path(), path("data"), command));
}

QByteArray KeyringSession::secretTool(const QStringList& arguments, const QByteArray& input) {
    QProcess process;
    start(process, QStringLiteral("secret-tool"), arguments, input);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

void KeyringSession::start(QProcess& process, const QString& program, const QStringList& arguments,
                           const QByteArray& input) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
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

} // namespace Varnel::Testing
