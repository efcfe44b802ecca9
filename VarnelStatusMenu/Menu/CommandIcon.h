#pragma once

#include <QIcon>

namespace Varnel {

/// The icon of that name in the desktop's theme; where the theme has none, a drawn symbol of the same meaning in the
/// colour of the menu's text. Empty for names that have neither.
QIcon commandIcon(const QString& name);

} // namespace Varnel
