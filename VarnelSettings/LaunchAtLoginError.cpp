#include <VarnelSettings/LaunchAtLoginError.h>

namespace Varnel {

QString LaunchAtLoginError::localizedDescription() const {
    switch (kind) {
    case Kind::operationFailed:
        return QStringLiteral("Launch at login update failed: ") + message;
    case Kind::unsupportedOS:
        return QStringLiteral("Launch at login requires macOS 13 or newer.");
    case Kind::notAppBundle:
        return QStringLiteral("Launch at login requires running as a bundled app.");
    }
    return {};
}

} // namespace Varnel
