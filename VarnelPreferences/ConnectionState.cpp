#include <VarnelPreferences/ConnectionState.h>

#include <VarnelShared/Text.h>

#include <QCoreApplication>

namespace Varnel {

namespace {
constexpr int longestErrorMessage = 300; ///< it may be the page of a gateway, and the pane grows with it

struct ConnectionTexts {
    Q_DECLARE_TR_FUNCTIONS(ConnectionState)
};

QString errorText(const ConnectionState& state) {
    if (state.errorMessage.isEmpty()) {
        return ConnectionTexts::tr("Connection error");
    }
    const QString message = firstCharacters(state.errorMessage, longestErrorMessage);
    return state.wasTried ? ConnectionTexts::tr("Connection error: %1").arg(message) : message;
}
} // namespace

ConnectionState::Kind connectionKind(const ConnectionState& state) {
    if (state.connecting != ConnectionState::Connecting::no) {
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
        return ConnectionTexts::tr("Not connected");
    case ConnectionState::Kind::connecting:
        return ConnectionTexts::tr("Connecting…");
    case ConnectionState::Kind::connected:
        return ConnectionTexts::tr("Connected");
    case ConnectionState::Kind::error:
        return errorText(state);
    }
    return {};
}

} // namespace Varnel
