#include <VarnelSettings/LaunchAtLoginManager.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

QString LaunchAtLoginError::localizedDescription() const {
    switch (kind) {
    case Kind::operationFailed:
        return QCoreApplication::translate("LaunchAtLoginManager", "Launch at login update failed: %1").arg(message);
    case Kind::unsupportedOS:
        return QCoreApplication::translate("LaunchAtLoginManager", "Launch at login requires macOS 13 or newer.");
    case Kind::notAppBundle:
        return QCoreApplication::translate("LaunchAtLoginManager",
                                           "Launch at login requires running as a bundled app.");
    }
    return {};
}

LaunchAtLoginManager::LaunchAtLoginManager(LoginItem& loginItem, std::optional<QString> bundleIdentifier)
    : m_loginItem(loginItem)
    , m_bundleIdentifier(std::move(bundleIdentifier)) {}

bool LaunchAtLoginManager::isEnabledForUI() const {
    switch (m_loginItem.status()) {
    case LoginItemStatus::enabled:
    case LoginItemStatus::requiresApproval:
        return true;
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        return false;
    }
    return false;
}

Result<void> LaunchAtLoginManager::setEnabled(bool enabled) {
    if (!m_bundleIdentifier) {
        return failure(LaunchAtLoginError::notAppBundle());
    }
    if (enabled == isEnabledForUI()) {
        return {};
    }
    const Result<void> changed = enabled ? m_loginItem.registerItem() : m_loginItem.unregisterItem();
    if (!changed) {
        return failure(LaunchAtLoginError::operationFailed(changed.error().localizedDescription()));
    }
    return {};
}

} // namespace Varnel
