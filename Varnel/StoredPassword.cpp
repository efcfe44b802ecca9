#include <Varnel/StoredPassword.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
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

QCoro::Task<std::optional<QString>> StoredPassword::readPatiently(QString account) {
    const auto self = shared_from_this();
    std::optional<QString> password;
    const std::function<void()> reading = [this, &account, &password] { password = read(account); };
    co_await m_keychain.runPatiently(reading);
    co_return password;
}

QCoro::Task<void> StoredPassword::save(QString account, QString password) {
    const auto self = shared_from_this();
    const QString entry = entryName(account);
    m_leftEntries.erase(entry);
    m_removedEntries.erase(entry);
    Result<void> saved;
    const std::function<void()> saving = [&] {
        if (read(account) != password) {
            saved = m_keychain.saveSecret(password, entry);
        }
    };
    co_await m_keychain.runPatiently(saving);
    if (m_removedEntries.contains(entry)) {
        forget(account);
        co_return;
    }
    if (!saved) {
        qCWarning(lcApp, "The password could not be stored: %s", qUtf8Printable(saved.error().localizedDescription()));
    }
    onNotice(AccountNotice::passwordNotStored, !saved);
    onNotice(AccountNotice::passwordNotDeleted, !m_leftEntries.empty());
}

bool StoredPassword::remove(const QString& account) {
    if (trimmed(account).isEmpty()) {
        return true;
    }
    const QString entry = entryName(account);
    m_removedEntries.insert(entry);
    const Result<void> removed = m_keychain.deleteSecret(entry);
    if (!removed) {
        qCWarning(lcApp, "The password could not be deleted: %s",
                  qUtf8Printable(removed.error().localizedDescription()));
        m_leftEntries.insert(entry);
    } else {
        m_leftEntries.erase(entry);
    }
    onNotice(AccountNotice::passwordNotDeleted, !m_leftEntries.empty());
    return removed.has_value();
}

void StoredPassword::forget(const QString& account) {
    onNotice(AccountNotice::passwordNotStored, false);
    if (!remove(account)) {
        startTask("deletion of the password",
                  ifAlive(weak_from_this(), &StoredPassword::removeAfterUnlocking, account));
    }
}

QCoro::Task<void> StoredPassword::removeAfterUnlocking(QString account) {
    const auto self = shared_from_this();
    co_await unlock(account, KeychainAccess::deleting);
    // Else the user has connected meanwhile, with a password that is to stay.
    if (m_leftEntries.contains(entryName(account))) {
        remove(account);
    }
}

QCoro::Task<bool> StoredPassword::unlock(QString account, KeychainAccess access) {
    if (trimmed(account).isEmpty()) {
        co_return true;
    }
    co_return co_await m_keychain.unlock(entryName(account), access);
}

} // namespace Varnel
