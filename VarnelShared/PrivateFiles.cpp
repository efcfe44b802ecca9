#include <VarnelShared/PrivateFiles.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Varnel {

namespace {
Failure systemFailure(int errorNumber) {
    return failure(FileError{QString::fromStdString(std::generic_category().message(errorNumber))});
}

/// Lets the rename itself survive a power failure. Best effort: some file systems flush no folders, and the new content
/// stands either way.
void flushFolder(const QString& path) {
    const int folder = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

void restrictOneToOwner(const QString& path, QFileDevice::Permissions owners) {
    const QFileDevice::Permissions all = QFileInfo(path).permissions();
    constexpr QFileDevice::Permissions others(0x0077); // and the group
    if (all & others) {
        QFile::setPermissions(path, all & owners);
    }
}
} // namespace

Result<std::optional<QByteArray>> readRegularFile(const QString& path, qint64 sizeLimit) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    QFile file(path);
    if (!info.isFile() || info.size() > sizeLimit) {
        return failure(FileError{
            QCoreApplication::translate("FileError", "It is no regular file of at most %1 bytes.").arg(sizeLimit)});
    }
    if (!file.open(QFile::ReadOnly)) {
        return failure(FileError{file.errorString()});
    }
    QByteArray bytes = file.read(sizeLimit);
    if (file.error() != QFileDevice::NoError) {
        return failure(FileError{file.errorString()});
    }
    return bytes;
}

void restrictToOwner(const QString& path) {
    constexpr QFileDevice::Permissions owners =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    restrictOneToOwner(path, owners);
    restrictOneToOwner(QFileInfo(path).absolutePath(), owners);
}

QString damagedPath(const QString& path) {
    return path + QStringLiteral(".damaged");
}

Result<void> keepAsDamaged(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    const QByteArray kept = QFile::encodeName(damagedPath(path));
    const QByteArray second = kept + ".new";
    ::unlink(second.constData());
    // A second name needs no room on the disk, and leaves the first one to whoever replaces it in one step.
    const bool hasSecond = QFileInfo(path).isFile() &&
                           ::linkat(AT_FDCWD, name.constData(), AT_FDCWD, second.constData(), AT_SYMLINK_FOLLOW) == 0;
    const bool isKept = ::rename((hasSecond ? second : name).constData(), kept.constData()) == 0;
    const int error = errno;
    ::unlink(second.constData()); // it is left where the file was kept already
    return isKept ? Result<void>() : systemFailure(error);
}

Result<void> createPrivateFolder(const QString& path) {
    const QFileInfo folder(path);
    if (folder.isDir()) {
        return {};
    }
    if (const QString parent = folder.absolutePath(); parent != folder.absoluteFilePath()) {
        if (const Result<void> made = createPrivateFolder(parent); !made) {
            return made;
        }
    }
    constexpr mode_t ownerAlone = 0700;
    if (::mkdir(QFile::encodeName(path).constData(), ownerAlone) != 0 && errno != EEXIST) {
        return systemFailure(errno);
    }
    return QFileInfo(path).isDir() ? Result<void>() : systemFailure(ENOTDIR);
}

Result<void> writeFileAtomically(const QString& path, const QByteArray& bytes, QFileDevice::Permissions permissions) {
    if (const Result<void> made = createPrivateFolder(QFileInfo(path).absolutePath()); !made) {
        return made;
    }
    // QSaveFile refuses to replace a file that may not be written to.
    if (QFileInfo(path).isFile()) {
        QFile::setPermissions(path, permissions);
    }
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(permissions) &&
                         file.write(bytes) == bytes.size() && file.flush();
    if (!written) {
        return failure(FileError{file.errorString()});
    }
    // Renaming alone would flush too, but would not tell when that fails: a full disk may show only here.
    if (::fsync(file.handle()) != 0) {
        return systemFailure(errno);
    }
    if (!file.commit()) {
        return failure(FileError{file.errorString()});
    }
    flushFolder(QFileInfo(path).absolutePath());
    return {};
}

} // namespace Varnel
