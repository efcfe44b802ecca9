#pragma once

#include <VarnelShared/Timers.h>
#include <VarnelStatusMenu/StatusItem.h>

#include <memory>

namespace Varnel::Testing {

/// What the viewer shows: the item in the session's panel, the pop-up by itself at the pointer, or the ordinary window.
enum class ViewerForm { item, popup, window };

/// `timers` must outlive the item.
std::unique_ptr<StatusItem> makeViewerStatusItem(ViewerForm form, TimerFactory& timers);

} // namespace Varnel::Testing
