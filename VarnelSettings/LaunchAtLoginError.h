#pragma once

#include <QString>

namespace Varnel {

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

} // namespace Varnel
