#include <Varnel/PlatformServices.h>

#include <QFileInfo>
#include <QStringList>

namespace Varnel {

namespace {
bool isDarkWanted(IconAppearanceMode mode, bool isSystemDark) {
    switch (mode) {
    case IconAppearanceMode::automatic:
        return isSystemDark;
    case IconAppearanceMode::light:
        return false;
    case IconAppearanceMode::dark:
        break;
    }
    return true;
}
} // namespace

QString BundleInfo::iconPath(IconAppearanceMode mode, bool isSystemDark) const {
    if (resourcesPath.isEmpty()) {
        return {};
    }
    const bool dark = isDarkWanted(mode, isSystemDark);
    const QStringList candidates = {
        dark ? QStringLiteral("Assets/AppIcon-1024-dark.png") : QStringLiteral("Assets/AppIcon-1024-light.png"),
        dark ? QStringLiteral("Resources/AppIconDark.icns") : QStringLiteral("Resources/AppIconLight.icns"),
        QStringLiteral("Assets/AppIcon-1024.png"),
        QStringLiteral("Resources/AppIcon.icns"),
    };
    for (const QString& candidate : candidates) {
        const QFileInfo file(resourcesPath + QLatin1Char('/') + candidate);
        if (file.isFile() && file.isReadable()) {
            return file.filePath();
        }
    }
    return {};
}

} // namespace Varnel
