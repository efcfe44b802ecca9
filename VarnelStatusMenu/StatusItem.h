#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <functional>
#include <memory>

namespace Varnel {

class OutputSource;

/// All that the item shows at one time.
struct StatusItemContent {
    QString title;   ///< the text in the panel
    QString toolTip; ///< one or two lines; empty: none
    StatusMenu menu;
    /// A sentence on how old the title is, while it is too old to be taken for the present: then every picture of the
    /// item is drawn pale, and a screen reader is given this line too.
    std::optional<QString> outdatedLine;
    bool operator==(const StatusItemContent&) const = default;
};

/// The application's one item in the desktop's status area. A port; every implementation
/// - shows the title in the panel in whatever form its host can (a label, a picture of the text, a window),
/// - opens the menu on a left click, with the content of the last `show`; a menu that is open when a new one comes
/// stays
///   as it is until it closes,
/// - offers the text form of the menu on a right click where the host draws that menu,
/// - calls the command handler on the main thread, once per choice.
class StatusItem {
public:
    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    virtual void show(const StatusItemContent& content) = 0;
    virtual void setCommandHandler(std::function<void(StatusMenuCommand)> handler) = 0;

    /// What later windows show beside the menu's content; it is held weakly.
    virtual void setOutputSource(std::weak_ptr<OutputSource> source) = 0;

    /// Shows the output and the menu's content in an ordinary window, brought to the front: for a click on a
    /// notification and for a desktop without a status area. The window follows later content.
    virtual void showWindow() = 0;
};

} // namespace Varnel
