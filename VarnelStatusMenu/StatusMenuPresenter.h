#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <functional>
#include <memory>

namespace Varnel {

/// Shows a status menu with widgets: as the pop-up of a status item, and as an ordinary window. Every back end of the
/// status item shares this one.
class StatusMenuPresenter {
public:
    StatusMenuPresenter();
    ~StatusMenuPresenter();
    StatusMenuPresenter(const StatusMenuPresenter&) = delete;
    StatusMenuPresenter& operator=(const StatusMenuPresenter&) = delete;

    /// Called once per command that is chosen, after the menu has closed.
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler);

    /// The content of the next menu that opens. An open pop-up stays as it is until it closes and is freed then; an
    /// open window takes the new content at once.
    void setMenu(const StatusMenu& menu);

    /// Opens the pop-up: on X11 a menu at the pointer, on Wayland a fixed-size window that closes on losing focus.
    /// Closes it when it is open already.
    void toggleMenu();
    bool isMenuOpen() const;

    /// Opens the ordinary window, or brings the open one to the front.
    void showWindow(const QString& title);

    /// Opens the ordinary window and leaves the keyboard with the window that has it.
    void showWindowQuietly(const QString& title);

    /// Opens the ordinary window minimised: out of the way, but there in the taskbar.
    void showWindowMinimized(const QString& title);
    void closeWindow();

    /// Called from the event loop when the user has closed the ordinary window; not for `closeWindow`.
    void setWindowClosedHandler(std::function<void()> handler);
    bool isWindowOpen() const;
    void setWindowTitle(const QString& title);

    /// Whether the ordinary window, the next one too, is the only way to reach the program.
    void setWindowStandsForItem(bool standsForItem);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Varnel
