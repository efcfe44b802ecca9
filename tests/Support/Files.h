#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <csignal>
#include <sys/resource.h>

namespace Varnel::Testing {

/// The bytes of a file; a null array when it cannot be read.
inline QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// Puts a file by other hands in this place; its folders are made.
inline void putFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
        qFatal("A file of the test cannot be written");
    }
}

/// As long as it lives no file of this process may grow, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit full{0, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
};

/// Takes the lines of the log in as long as it lives.
class RecordedLog {
public:
    RecordedLog() {
        lines.clear();
        m_former =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { lines << line; });
    }
    ~RecordedLog() { qInstallMessageHandler(m_former); }
    RecordedLog(const RecordedLog&) = delete;
    RecordedLog& operator=(const RecordedLog&) = delete;

    static inline QStringList lines;

private:
    QtMessageHandler m_former;
};

} // namespace Varnel::Testing
