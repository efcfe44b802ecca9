#pragma once

#include <VarnelStatusMenu/StatusItem.h>

#include <memory>

namespace Varnel::Testing {

/// What the viewer shows: the pop-up by itself at the pointer, or the ordinary window.
enum class ViewerForm { popup, window };

std::unique_ptr<StatusItem> makeViewerStatusItem(ViewerForm form);

} // namespace Varnel::Testing
