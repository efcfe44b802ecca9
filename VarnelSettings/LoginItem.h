#pragma once

#include <VarnelShared/Result.h>

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

} // namespace Varnel
