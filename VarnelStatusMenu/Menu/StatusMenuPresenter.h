#pragma once

#include <VarnelStatusMenu/Menu/PopupPlacement.h>
#include <VarnelStatusMenu/StatusItem.h>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

namespace Varnel {

class OutputWindow;
class StatusPopupWindow;

/// Shows a status menu with widgets: as the pop-up of a status item, and as an ordinary window. Every back end of the
/// status item shares this one.
class StatusMenuPresenter final : public QObject {
public:
    explicit StatusMenuPresenter(FreeArea freeArea = announcedFreeArea);
    ~StatusMenuPresenter() override;

    /// Called once per command that is chosen, after the menu has closed.
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler);

    /// What the next window that opens shows beside the menu's content.
    void setOutputSource(std::weak_ptr<OutputSource> source) { m_outputSource = std::move(source); }

    /// The content of the next menu that opens. An open pop-up stays as it is until it closes and is freed then; an
    /// open window takes the new content at once.
    void setContent(const StatusItemContent& content);

    /// Opens the pop-up beside the panel, in the way of the session (`PopupWay`), or closes it when it is open already.
    /// `item` is where on the desktop the item was clicked, if the panel has told.
    void toggleMenu(std::optional<QPoint> item = std::nullopt);
    bool isMenuOpen() const;

    /// Opens the ordinary window, or brings the open one to the front.
    void showWindow();

    /// Opens the ordinary window and leaves the keyboard with the window that has it.
    void showWindowQuietly();

    /// Opens the ordinary window minimised: out of the way, but there in the taskbar.
    void showWindowMinimized();
    void closeWindow();

    /// Called from the event loop when the user has closed the ordinary window; not for `closeWindow`.
    void setWindowClosedHandler(std::function<void()> handler);
    bool isWindowOpen() const;

    /// Whether the ordinary window, the next one too, is the only way to reach the program.
    void setWindowStandsForItem(bool standsForItem);

private:
    void openPopup(std::optional<QPoint> item);
    void openPopupMenu();
    void openMaximizedCover(Qt::Corner trayCorner, std::optional<QPoint> item);
    void openPlacedWindow(const PopupSession& session, std::optional<QPoint> item);
    StatusPopupWindow* newPopupWindow();
    template <typename Popup>
    void follow(Popup* opened);
    void deliver(StatusMenuCommand command);
    OutputWindow& window();
    bool isClickThatDismissed();

    FreeArea m_freeArea;
    StatusItemContent m_content;
    std::weak_ptr<OutputSource> m_outputSource;
    std::function<void(StatusMenuCommand)> m_commandHandler;
    std::function<void()> m_windowClosed;
    QPointer<QWidget> m_popup;
    QPointer<OutputWindow> m_window;
    bool m_windowStandsForItem = false;
    QElapsedTimer m_sinceDismissal;
};

} // namespace Varnel
