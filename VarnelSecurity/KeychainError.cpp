#include <VarnelSecurity/KeychainError.h>

namespace Varnel {

QString KeychainError::localizedDescription() const {
    switch (kind) {
    case Kind::unexpectedStatus:
        return QStringLiteral("Keychain operation failed with status %1.").arg(status);
    case Kind::encodingFailed:
        return QStringLiteral("Failed to encode value for Keychain.");
    case Kind::decodingFailed:
        return QStringLiteral("Failed to decode value from Keychain.");
    }
    return {};
}

} // namespace Varnel
