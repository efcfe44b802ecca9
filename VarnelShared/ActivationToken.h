#pragma once

#include <QString>

namespace Varnel {

/// Takes what the desktop has given with a click or a start, by which the next window that is brought to the front is
/// let there: the token of the xdg-activation protocol. Qt's Wayland platform reads it from the environment and spends
/// it; elsewhere there is no such thing, and an empty token is none.
void takeActivationToken(const QString& token);

/// The token that this program was started with; empty without.
QString startActivationToken();

} // namespace Varnel
