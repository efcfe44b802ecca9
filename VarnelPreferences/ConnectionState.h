#pragma once

#include <QString>

namespace Varnel {

/// How the application stands with the service, as the Account pane shows it.
struct ConnectionState {
    enum class Kind { notConnected, connecting, connected, error };

    bool isConnecting = false; ///< a save is signing in
    bool isConnected = false;  ///< a session exists
    bool hasError = false;     ///< the last sign-in or poll failed; possible with a session too
    QString errorMessage;      ///< the error's line, may be empty

    bool operator==(const ConnectionState&) const = default;
};

/// What to show: signing in covers everything, an error covers a session.
ConnectionState::Kind connectionKind(const ConnectionState& state);

/// "Connected", "Not connected", "Connecting…" or "Connection error", the last with its message behind it.
QString connectionText(const ConnectionState& state);

} // namespace Varnel
