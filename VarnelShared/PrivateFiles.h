#pragma once

#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace Varnel {

/// Why a file or folder could not be read or made: the system's own message.
struct FileError {
    QString description;

    QString localizedDescription() const { return description; }
    bool operator==(const FileError&) const = default;
};

/// Owner reads and writes, nobody else does anything.
constexpr QFileDevice::Permissions privateFilePermissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// The whole file; none when there is no such file. Fails with `FileError` for one that cannot be read, is larger than
/// `sizeLimit` bytes or is no regular file: a pipe would be waited for.
Result<std::optional<QByteArray>> readRegularFile(const QString& path, qint64 sizeLimit);

/// Takes from everybody but the owner what rights they have to the file and to its folder, where these are there.
void restrictToOwner(const QString& path);

/// Where a file that could not be understood is kept: "<path>.damaged".
QString damagedPath(const QString& path);

/// Keeps the file at `damagedPath`, in place of the one kept before. A regular file stays under its own name, too,
/// until it is replaced; anything else is gone from there. Fails with `FileError`, with the file where it was.
Result<void> keepAsDamaged(const QString& path);

/// Makes the folder and its missing parents, each with mode 0700; what exists already keeps its mode. Fails with
/// `FileError`.
Result<void> createPrivateFolder(const QString& path);

/// Replaces the whole file in one step: a temporary file beside it is written, flushed to disk and renamed. Missing
/// folders are made as by `createPrivateFolder`; the old file's mode does not matter. On failure, a `FileError`, the
/// old content stays as it was.
Result<void> writeFileAtomically(const QString& path, const QByteArray& bytes,
                                 QFileDevice::Permissions permissions = privateFilePermissions);

} // namespace Varnel
