#pragma once

#include <functional>

namespace Varnel {

/// What happens to the machine under the application. A port.
class SystemEvents {
public:
    SystemEvents() = default;
    SystemEvents(const SystemEvents&) = delete;
    SystemEvents& operator=(const SystemEvents&) = delete;
    virtual ~SystemEvents() = default;

    /// True also where nobody can tell.
    virtual bool isNetworkReachable() const = 0;

    /// Called when the network has become reachable after it was not, and when it has come to lead further.
    virtual void setNetworkReachableHandler(std::function<void()> handler) = 0;

    /// Called when the machine has woken from sleep. Never called where nothing announces it.
    virtual void setResumeHandler(std::function<void()> handler) = 0;
};

} // namespace Varnel
