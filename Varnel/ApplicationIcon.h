#pragma once

#include <VarnelShared/AppSettings.h>

#include <QString>

namespace Varnel {

/// The icon resource that shows the wanted variant, as a path below `resourcesPath`; empty when there is none. Under
/// `automatic` the system's appearance decides. A missing variant falls back to the plain icon. PNG comes before ICNS,
/// which not every installation can read.
QString applicationIconPath(const QString& resourcesPath, IconAppearanceMode mode, bool isSystemDark);

} // namespace Varnel
