#pragma once

#include <VarnelShared/Result.h>

#include <QString>

#include <optional>

namespace Varnel {

/// What the system says of the application as a login item.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but the user has to allow it in the session's own settings
    notFound = 3,         ///< something stands in its place that the system does not take for a login item
};

/// The application itself as something the session starts at login. A port; every failure carries the system's own
/// message as its description.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    virtual LoginItemStatus status() const = 0;
    virtual Result<void> registerItem() = 0;
    virtual Result<void> unregisterItem() = 0;
};

/// Why the application's start at login could not be changed.
struct LaunchAtLoginError {
    enum class Kind { operationFailed, unsupportedOS, notAppBundle };

    Kind kind;
    QString message; ///< the system's own, for `operationFailed` alone

    static LaunchAtLoginError operationFailed(const QString& message) { return {Kind::operationFailed, message}; }
    static LaunchAtLoginError unsupportedOS() { return {Kind::unsupportedOS, {}}; }
    static LaunchAtLoginError notAppBundle() { return {Kind::notAppBundle, {}}; }

    QString localizedDescription() const;

    bool operator==(const LaunchAtLoginError&) const = default;
};

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
