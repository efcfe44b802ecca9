#pragma once

#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace Varnel {

/// Why a file or folder could not be made: the system's own message.
struct FileError {
    QString description;

    QString localizedDescription() const { return description; }
    bool operator==(const FileError&) const = default;
};

/// Owner reads and writes, nobody else does anything.
constexpr QFileDevice::Permissions privateFilePermissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Makes the folder and its missing parents, each with mode 0700; what exists already keeps its mode. Fails with
/// `FileError`.
Result<void> createPrivateFolder(const QString& path);

/// Replaces the whole file in one step: a temporary file beside it is written, flushed to disk and renamed. Missing
/// folders are made as by `createPrivateFolder`; the old file's mode does not matter. On failure, a `FileError`, the
/// old content stays as it was.
Result<void> writeFileAtomically(const QString& path, const QByteArray& bytes,
                                 QFileDevice::Permissions permissions = privateFilePermissions);

} // namespace Varnel
