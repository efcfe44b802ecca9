#pragma once

#include <VarnelSettings/LoginItem.h>

#include <QString>

#include <optional>

namespace Varnel {

/// Makes the session start the application at login, or no longer.
class LaunchAtLoginManager final {
public:
    /// `loginItem` must outlive the manager. Without a bundle identifier nothing can be changed.
    LaunchAtLoginManager(LoginItem& loginItem, std::optional<QString> bundleIdentifier);

    /// Whether a switch shows as on: a login item that awaits the user's approval does, too.
    bool isEnabledForUI() const;

    /// Makes the system follow the wish; asks for nothing that is so already. Fails with `LaunchAtLoginError`:
    /// `notAppBundle` without a bundle identifier, `operationFailed` with the system's message.
    Result<void> setEnabled(bool enabled);

private:
    LoginItem& m_loginItem;
    const std::optional<QString> m_bundleIdentifier;
};

} // namespace Varnel
