#include "Fuzz.h"

#include <VarnelSettings/AppSettingsStore.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Varnel;
using Fuzz::require;

// The settings' record, and the file around it: what can be read is written again as it was.

namespace {
void readAsRecord(const QByteArray& bytes) {
    if (const Result<AppSettings> settings = decodeAppSettings(bytes)) {
        const Result<AppSettings> again = decodeAppSettings(encodeAppSettings(*settings));
        require(again && *again == *settings);
        require(settings->clampedPollInterval() >= AppSettings::pollIntervalRange.first);
    }
}

void readAsFile(const QByteArray& bytes) {
    static const QTemporaryDir folder(QFile::exists(QStringLiteral("/dev/shm")) ? QStringLiteral("/dev/shm/fuzz-XXXXXX")
                                                                                : QString());
    const QString path = folder.filePath(QStringLiteral("defaults.ini"));
    QFile file(path);
    require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    UserDefaults defaults(path);
    const AppSettingsStore store(defaults);
    readAsRecord(encodeAppSettings(store.load()));
    store.isSignedOut();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = Fuzz::bytesOf(data, size);
    bytes.startsWith('[') ? readAsFile(bytes) : readAsRecord(bytes);
    return 0;
}
