#pragma once

#include "../Support/PrivateBus.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace Varnel::Testing {

/// A session with a home and a bus of its own, and the real keyring daemon on it when asked for.
class KeyringSession {
public:
    KeyringSession();

    /// An unlocked, empty keyring on the bus.
    void startKeyring();
    void stopKeyring();
    void lockKeyring();
    /// Whether the keyring ever wanted to ask the user, who never answers.
    bool wasUserAsked() const { return QFile::exists(path("asked")); }
    /// The keyring keeps its name on the bus and answers nothing.
    void suspendKeyring();
    void resumeKeyring();

    /// The bus could start a Secret Service with this shell command now; with an empty one it no longer can.
    void setSecretServiceStartable(const QString& command);

    /// Runs secret-tool to its end and gives what it printed.
    QByteArray secretTool(const QStringList& arguments, const QByteArray& input = {});

    QString path(const char* name) const { return m_home.filePath(QLatin1String(name)); }

private:
    void start(QProcess& process, const QString& program, const QStringList& arguments, const QByteArray& input);

    QTemporaryDir m_home;
    PrivateBus m_bus;
    QProcess m_keyring;
};

} // namespace Varnel::Testing
