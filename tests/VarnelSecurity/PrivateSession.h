#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace Varnel::Testing {

/// A session bus of the tests' own with nothing on it, in a home of its own, that the whole test binary uses; and
/// the real keyring daemon on it when asked for.
class PrivateSession {
public:
    /// What has to be installed for the tests of the keyring and is not; empty when all is there.
    static QString missingProgram();

    PrivateSession();
    ~PrivateSession();
    PrivateSession(const PrivateSession&) = delete;
    PrivateSession& operator=(const PrivateSession&) = delete;

    /// An unlocked, empty keyring on the bus.
    void startKeyring();
    void stopKeyring();
    void lockKeyring();
    /// Whether the keyring ever wanted to ask the user, who never answers.
    bool wasUserAsked() const { return QFile::exists(path("asked")); }
    /// The keyring keeps its name on the bus and answers nothing.
    void suspendKeyring();

    /// The bus could start a Secret Service now, or no longer can.
    void setSecretServiceStartable(bool startable);

    /// Runs a program of the session to its end and gives what it printed.
    QByteArray run(const QString& program, const QStringList& arguments, const QByteArray& input = {});

    QString path(const char* name) const { return m_home.filePath(QLatin1String(name)); }

private:
    QDBusMessage call(const char* service, const char* object, const char* interface, const char* method,
                      const QVariantList& arguments);
    void start(QProcess& process, const QString& program, const QStringList& arguments, const QByteArray& input = {});
    bool isSecretServiceOwned();

    QTemporaryDir m_home;
    QProcess m_bus;
    std::unique_ptr<QProcess> m_keyring;
    QDBusConnection m_connection{QString()};
};

} // namespace Varnel::Testing
