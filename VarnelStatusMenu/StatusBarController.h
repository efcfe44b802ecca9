#pragma once

#include <VarnelStatusMenu/StatusItem.h>

#include <functional>
#include <memory>

namespace Varnel {

/// Owns the application's one status item: shows presentations in it and reports what the user chooses from its menu.
/// Main thread only.
class StatusBarController {
public:
    /// Shows the initial presentation at once; `statusItem` is never null.
    explicit StatusBarController(std::unique_ptr<StatusItem> statusItem);

    /// Sets the title, the tooltip and a new menu.
    void update(const StatusPresentation& presentation);

    const StatusPresentation& presentation() const { return m_presentation; }

    /// What the window shows beside the menu's content; it is held weakly.
    void setOutputSource(std::weak_ptr<OutputSource> source);

    /// Opens the output and the menu's content in a window, for a desktop action that has no pointer, such as a click
    /// on a notification.
    void showWindow();

    /// Called once per choice; a command whose callback is not set does nothing.
    std::function<void()> onRefresh;
    std::function<void()> onOpenPreferences;
    std::function<void()> onSignIn;
    std::function<void()> onSignOut;

private:
    void handleCommand(StatusMenuCommand command);

    StatusPresentation m_presentation = StatusPresentation::initial();
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace Varnel
