#pragma once

#include <QString>

#include <functional>

namespace Varnel {

/// Whether the application has a place in the taskbar of its own.
enum class ActivationPolicy {
    regular,   ///< a taskbar entry exists at all times, and the windows have theirs
    accessory, ///< the status item only
};

/// What the desktop does with the application as a whole. A port.
class ApplicationShell {
public:
    ApplicationShell() = default;
    ApplicationShell(const ApplicationShell&) = delete;
    ApplicationShell& operator=(const ApplicationShell&) = delete;
    virtual ~ApplicationShell() = default;

    virtual ActivationPolicy activationPolicy() const = 0;

    /// False when the desktop offers no such thing; the policy then stays as it was.
    virtual bool setActivationPolicy(ActivationPolicy policy) = 0;

    /// Called when the user activates the taskbar entry of the application itself.
    virtual void setReopenHandler(std::function<void()> handler) = 0;

    /// The icon of the application's windows, read from an image file. Costs nothing while there is no window.
    virtual void setApplicationIcon(const QString& imagePath) = 0;

    /// Hides every window; the status item stays.
    virtual void hide() = 0;

    /// Ends the event loop; the application then shuts down in order.
    virtual void terminate() = 0;
};

} // namespace Varnel
