#include <VarnelSecurity/KeychainStore.h>

#include <QCoreApplication>
#include <QStringDecoder>
#include <QStringEncoder>

namespace Varnel {

namespace {
// Stateless, so that half a character at the end is an error, and with an initial byte order mark kept as it is.
constexpr auto exactly = QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom;

std::optional<QByteArray> encoded(const QString& text) {
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QByteArray bytes = encoder.encode(text);
    return encoder.hasError() ? std::nullopt : std::optional(bytes);
}

std::optional<QString> decoded(const QByteArray& bytes) {
    QStringDecoder decoder(QStringConverter::Utf8, exactly);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}
} // namespace

QString KeychainError::localizedDescription() const {
    switch (kind) {
    case Kind::unexpectedStatus:
        return QCoreApplication::translate("KeychainError", "Keychain operation failed with status %1.").arg(status);
    case Kind::encodingFailed:
        return QCoreApplication::translate("KeychainError", "Failed to encode value for Keychain.");
    case Kind::decodingFailed:
        return QCoreApplication::translate("KeychainError", "Failed to decode value from Keychain.");
    }
    return {};
}

KeychainStore::KeychainStore(const QString& service, KeychainServices& services)
    : m_service(service)
    , m_services(services) {}

Result<void> KeychainStore::saveSecret(const QString& secret, const QString& account) {
    const std::optional<QByteArray> bytes = encoded(secret);
    if (!bytes) {
        return failure(KeychainError::encodingFailed());
    }
    m_services.deleteMatching(query(account)); // mostly there is nothing to delete: its status says nothing here
    const KeychainStatus status = m_services.add(query(account), *bytes);
    if (status != keychainSuccess) {
        return failure(KeychainError::unexpectedStatus(status));
    }
    return {};
}

Result<std::optional<QString>> KeychainStore::readSecret(const QString& account) {
    const KeychainMatch match = m_services.copyMatching(query(account));
    if (match.status == keychainItemNotFound) {
        return std::nullopt;
    }
    if (match.status != keychainSuccess) {
        return failure(KeychainError::unexpectedStatus(match.status));
    }
    std::optional<QString> secret = match.data ? decoded(*match.data) : std::nullopt;
    if (!secret) {
        return failure(KeychainError::decodingFailed());
    }
    return secret;
}

Result<void> KeychainStore::deleteSecret(const QString& account) {
    const KeychainStatus status = m_services.deleteMatching(query(account));
    if (status != keychainSuccess && status != keychainItemNotFound) {
        return failure(KeychainError::unexpectedStatus(status));
    }
    return {};
}

QCoro::Task<bool> KeychainStore::unlock(const QString& account, KeychainAccess access) {
    return m_services.unlock(query(account), access);
}

} // namespace Varnel
