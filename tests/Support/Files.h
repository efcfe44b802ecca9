#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

} // namespace Varnel::Testing
