#include <Varnel/StoredPassword.h>

#include <VarnelShared/Text.h>

namespace Varnel {

namespace {
QString entryName(const QString& account) {
    return QStringLiteral("password.") + trimmed(account).toLower();
}
} // namespace

StoredPassword::StoredPassword(KeychainServices& services)
    : m_keychain(QStringLiteral("com.varnel.menubar"), services) {}

std::optional<QString> StoredPassword::read(const QString& account) {
    if (trimmed(account).isEmpty()) {
        return std::nullopt;
    }
    const Result<std::optional<QString>> secret = m_keychain.readSecret(entryName(account));
    const QString password = secret ? trimmed(secret->value_or(QString())) : QString();
    return password.isEmpty() ? std::nullopt : std::optional(password);
}

Result<void> StoredPassword::save(const QString& account, const QString& password) {
    if (m_leftEntry == entryName(account)) {
        m_leftEntry.clear();
    }
    return read(account) == password ? Result<void>() : m_keychain.saveSecret(password, entryName(account));
}

Result<void> StoredPassword::remove(const QString& account) {
    if (trimmed(account).isEmpty()) {
        return {};
    }
    const QString entry = entryName(account);
    const Result<void> removed = m_keychain.deleteSecret(entry);
    if (!removed) {
        m_leftEntry = entry;
    } else if (m_leftEntry == entry) {
        m_leftEntry.clear();
    }
    return removed;
}

QCoro::Task<bool> StoredPassword::unlock(QString account, KeychainAccess access) {
    if (trimmed(account).isEmpty()) {
        co_return true;
    }
    co_return co_await m_keychain.unlock(entryName(account), access);
}

} // namespace Varnel
