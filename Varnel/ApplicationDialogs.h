#pragma once

#include <QString>

namespace Varnel {

/// The two small windows of the application menu. Neither blocks anything; a second call brings the open one to the
/// front.
namespace ApplicationDialogs {

/// Name, version and icon of the application. `iconPath` names an image file and may be empty.
void showAboutPanel(const QString& version, const QString& iconPath);

/// Says that this build has no update mechanism.
void showNoUpdatesAlert();

} // namespace ApplicationDialogs

} // namespace Varnel
