#pragma once

#include <VarnelAppSupport/OutputHistoryStore.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace Varnel::Testing {

/// A temporary place for one history file. The data folder in it is made by the first save.
class HistoryFolder {
public:
    QString root() const { return m_root.path(); }
    QString dataFolder() const { return m_root.filePath(QStringLiteral("data")); }

    OutputHistoryStore store(int retentionDays = OutputHistoryStore::defaultRetentionDays) const {
        return {dataFolder(), QStringLiteral("com.varnel.menubar"), retentionDays};
    }

    /// The bytes of the history file; a null array when there is none.
    QByteArray content() const {
        QFile file(store().filePath());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Puts a file by other hands in the place of the history file.
    void put(const QByteArray& content) const {
        QDir().mkpath(QFileInfo(store().filePath()).absolutePath());
        QFile file(store().filePath());
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
            qFatal("The test's history file cannot be written");
        }
    }

private:
    QTemporaryDir m_root;
};

} // namespace Varnel::Testing
