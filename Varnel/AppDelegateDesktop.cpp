#include <Varnel/AppDelegate.h>

#include <Varnel/ApplicationIcon.h>

#include <VarnelShared/Logging.h>

namespace Varnel {

namespace {
const char* policyName(ActivationPolicy policy) {
    return policy == ActivationPolicy::regular ? "regular" : "accessory";
}
} // namespace

void AppDelegate::applyLaunchAtLoginPreference(LaunchAtLoginRequest request) {
    const bool isStart = request == LaunchAtLoginRequest::start;
    if (isStart && !m_settings.launchAtLogin) {
        return; // an entry that the user made, or that outlived lost settings, is the user's
    }
    if (m_settings.launchAtLogin == m_launchAtLoginManager.isEnabledForUI()) {
        return; // an unbundled program would be told otherwise that it cannot have what nobody wants
    }
    const Result<void> changed = m_launchAtLoginManager.setEnabled(m_settings.launchAtLogin);
    if (changed) {
        return;
    }
    const QString description = changed.error().localizedDescription();
    qCWarning(lcApp, "%s", qUtf8Printable(description));
    if (isStart) {
        return;
    }
    m_settings.launchAtLogin = m_launchAtLoginManager.isEnabledForUI();
    m_settingsStore.save(m_settings);
    if (PreferencesWindowController* window = m_preferencesCoordinator.window()) {
        window->showLaunchAtLoginError(description, m_settings.launchAtLogin);
    }
}

void AppDelegate::applyDockIconPreference() {
    const ActivationPolicy policy = m_settings.showDockIcon ? ActivationPolicy::regular : ActivationPolicy::accessory;
    if (m_platform.shell.activationPolicy() == policy) {
        return;
    }
    if (!m_platform.shell.setActivationPolicy(policy)) {
        qCWarning(lcApp, "Failed to set activation policy to %s", policyName(policy));
        return;
    }
    applyApplicationIconIfAvailable();
    if (m_preferencesCoordinator.window()) {
        bringPreferencesToFront();
    }
}

void AppDelegate::applyApplicationIconIfAvailable() {
    m_platform.shell.setApplicationIcon(applicationIconPath(
        m_platform.bundle.resourcesPath, m_settings.iconAppearanceMode, m_platform.appearance.isDark()));
}

void AppDelegate::observeAppearanceChanges() {
    m_appearanceObservation = m_platform.appearance.observe([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->applyApplicationIconIfAvailable();
        }
    });
}

} // namespace Varnel
