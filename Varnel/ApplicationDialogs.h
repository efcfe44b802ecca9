#pragma once

#include <Varnel/PlatformServices.h>

namespace Varnel {

/// The two small windows of the application menu. Neither blocks anything; a second call brings the open one to the
/// front.
namespace ApplicationDialogs {

/// Name, version and icon of the application; the icon follows the appearance of this moment.
void showAboutPanel(const BundleInfo& bundle, const Appearance& appearance);

/// Says that this build has no update mechanism.
void showNoUpdatesAlert();

} // namespace ApplicationDialogs

} // namespace Varnel
