#pragma once

#include <QIcon>

namespace Varnel {

/// A drawn symbol in the colour of the menu's text for that name of the icon naming specification; empty for names that
/// have none. Not the icon of the desktop's theme: such icons do not follow a change of the theme, and are made for one
/// background, while the row under the pointer has another.
QIcon commandIcon(const QString& name);

} // namespace Varnel
