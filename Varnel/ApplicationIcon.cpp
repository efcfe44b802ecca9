#include <Varnel/ApplicationIcon.h>

#include <QFileInfo>
#include <QStringList>

namespace Varnel {

namespace {
bool isDark(IconAppearanceMode mode, bool isSystemDark) {
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

QString applicationIconPath(const QString& resourcesPath, IconAppearanceMode mode, bool isSystemDark) {
    if (resourcesPath.isEmpty()) {
        return {};
    }
    const bool dark = isDark(mode, isSystemDark);
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
