#include <VarnelPreferences/ConnectionState.h>

#include <VarnelShared/Text.h>

namespace Varnel {

namespace {
constexpr int longestErrorMessage = 300; ///< it may be the page of a gateway, and the pane grows with it
}

ConnectionState::Kind connectionKind(const ConnectionState& state) {
    if (state.isConnecting) {
        return ConnectionState::Kind::connecting;
    }
    if (state.hasError) {
        return ConnectionState::Kind::error;
    }
    return state.isConnected ? ConnectionState::Kind::connected : ConnectionState::Kind::notConnected;
}

QString connectionText(const ConnectionState& state) {
    switch (connectionKind(state)) {
    case ConnectionState::Kind::notConnected:
        return QStringLiteral("Not connected");
    case ConnectionState::Kind::connecting:
        return QStringLiteral("Connecting…");
    case ConnectionState::Kind::connected:
        return QStringLiteral("Connected");
    case ConnectionState::Kind::error:
        return state.errorMessage.isEmpty()
                   ? QStringLiteral("Connection error")
                   : QStringLiteral("Connection error: ") + firstCharacters(state.errorMessage, longestErrorMessage);
    }
    return {};
}

} // namespace Varnel
