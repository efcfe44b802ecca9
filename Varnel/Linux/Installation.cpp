#include <Varnel/Linux/Installation.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace Varnel {

namespace {
BundleInfo findBundle(const QString& executable) {
    const QString identifier = QString::fromLatin1(BundleInfo::applicationIdentifier);
    const QString share = QDir::cleanPath(QFileInfo(executable).path() + QLatin1String("/../share"));
    const QFileInfo desktopEntry(share + QLatin1String("/applications/") + identifier + QLatin1String(".desktop"));
    if (!desktopEntry.isFile()) {
        return {std::nullopt, QCoreApplication::translate("ApplicationDialogs", "Development Build"), {}};
    }
    return {identifier, QStringLiteral(VARNEL_VERSION), share + QLatin1String("/varnel")};
}
} // namespace

Installation findInstallation() {
    const QString identifier = QString::fromLatin1(BundleInfo::applicationIdentifier);
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString executable = QCoreApplication::applicationFilePath();
    return {
        findBundle(executable),
        executable,
        config + QLatin1Char('/') + identifier + QLatin1String("/defaults.ini"),
        data + QLatin1Char('/') + identifier + QLatin1String("/keychain.json"),
        config + QLatin1String("/autostart"),
        data,
    };
}

} // namespace Varnel
