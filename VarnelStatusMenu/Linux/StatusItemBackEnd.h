#pragma once

#include <VarnelStatusMenu/StatusItem.h>

#include <QPoint>

#include <functional>
#include <optional>

namespace Varnel {

/// What a person can do with the item in the panel.
struct StatusItemHandlers {
    /// A click, or "Show Chart": open our own menu. `item` is where on the desktop the click was, if the panel tells.
    std::function<void(std::optional<QPoint> item)> openMenu;
    std::function<void(StatusMenuCommand)> choose;
    std::function<void()> showWindow; ///< "Show Chart in a Window"
};

/// One way of showing the item in a panel. Nothing is shown before `setShown(true)`.
class StatusItemBackEnd {
public:
    /// Whether the session has a panel of this kind; `unknown` until the session has answered.
    enum class Availability { unknown, available, unavailable };

    StatusItemBackEnd() = default;
    StatusItemBackEnd(const StatusItemBackEnd&) = delete;
    StatusItemBackEnd& operator=(const StatusItemBackEnd&) = delete;
    virtual ~StatusItemBackEnd() = default;

    virtual Availability availability() const = 0;

    /// `changed` is called from the event loop after each change of `availability`.
    virtual void setAvailabilityHandler(std::function<void()> changed) = 0;

    /// What is shown, now or when the item is shown next.
    virtual void setContent(const StatusItemContent& content) = 0;

    /// Shows the item or takes it away.
    virtual void setShown(bool isShown) = 0;
};

} // namespace Varnel
