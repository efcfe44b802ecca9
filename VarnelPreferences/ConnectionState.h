#pragma once

#include <QString>

namespace Varnel {

/// How the application stands with the service, as the Account pane shows it.
struct ConnectionState {
    enum class Kind { notConnected, connecting, connected, error };

    /// Who waits for the sign-in that goes on.
    enum class Connecting {
        no,
        inBackground, ///< nobody: the program has begun it, and the user may go on typing
        forUser,      ///< the user, who has saved
    };

    /// The field that the user has to fill in or to correct.
    enum class WantedField { none, account, password, baseURL };

    Connecting connecting = Connecting::no;
    bool isConnected = false;               ///< a session exists
    bool hasError = false;                  ///< the last sign-in or poll failed; possible with a session too
    QString errorMessage = {};              ///< the error's line, may be empty
    WantedField wanted = WantedField::none; ///< what the error asks for
    bool wasTried = true;                   ///< false: the error speaks of the form, and no connection was tried
    QString details = {};                   ///< what each address has answered, a line each; may be empty

    bool operator==(const ConnectionState&) const = default;
};

/// What to show: signing in covers everything, an error covers a session.
ConnectionState::Kind connectionKind(const ConnectionState& state);

/// "Connected", "Not connected", "Connecting…" or "Connection error", the last with its message behind it. A message of
/// the form stands for itself.
QString connectionText(const ConnectionState& state);

} // namespace Varnel
