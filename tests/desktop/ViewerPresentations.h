#pragma once

#include <VarnelStatusMenu/StatusPresentation.h>

#include <map>

namespace Varnel::Testing {

/// Presentations worth looking at, by name.
std::map<QString, StatusPresentation> viewerPresentations();

} // namespace Varnel::Testing
