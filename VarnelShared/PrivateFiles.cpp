#include <VarnelShared/PrivateFiles.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace Varnel {

namespace {
tl::unexpected<Error> systemFailure(int errorNumber) {
    return failure(FileError{QString::fromStdString(std::generic_category().message(errorNumber))});
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
    return file.commit() ? Result<void>() : failure(FileError{file.errorString()});
}

} // namespace Varnel
