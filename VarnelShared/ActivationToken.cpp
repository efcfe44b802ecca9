#include <VarnelShared/ActivationToken.h>

namespace Varnel {

namespace {
constexpr char tokenVariable[] = "XDG_ACTIVATION_TOKEN";
} // namespace

void takeActivationToken(const QString& token) {
    if (!token.isEmpty() && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        qputenv(tokenVariable, token.toUtf8());
    }
}

QString startActivationToken() {
    return qEnvironmentVariable(tokenVariable);
}

} // namespace Varnel
