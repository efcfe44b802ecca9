#include <VarnelShared/PrivateFiles.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
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
} // namespace

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
