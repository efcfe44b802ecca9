#pragma once

#include <VarnelStatusMenu/StatusMenu.h>
#include <VarnelStatusMenu/StatusPresentation.h>

namespace Varnel::Testing {

/// The text menu of a connected application whose output is `output`; without a chart there is no "Show Chart".
inline ExportedMenu textMenu(const QString& output, bool hasChart = true) {
    StatusPresentation presentation;
    presentation.outputValue = output;
    presentation.showOutputChart = hasChart;
    presentation.isSignedIn = true;
    return exportedMenu(statusMenu(presentation));
}

} // namespace Varnel::Testing
