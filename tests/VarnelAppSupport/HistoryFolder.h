#pragma once

#include <VarnelAppSupport/OutputHistoryStore.h>

#include "../Support/Files.h"

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

    QString keptFile() const { return store().filePath() + QStringLiteral(".damaged"); }

    QByteArray content() const { return contentOf(store().filePath()); }
    void put(const QByteArray& content) const { putFile(store().filePath(), content); }

private:
    QTemporaryDir m_root;
};

} // namespace Varnel::Testing
