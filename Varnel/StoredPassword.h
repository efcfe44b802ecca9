#pragma once

#include <VarnelSecurity/KeychainStore.h>

namespace Varnel {

/// The password of an account in the keychain, under "password." and the account trimmed and in lower case: spellings
/// of one account that differ only in case share it. An empty account has none.
class StoredPassword {
public:
    /// `services` must outlive this object.
    explicit StoredPassword(KeychainServices& services);

    /// None when there is none, when it is empty and when it cannot be read.
    std::optional<QString> read(const QString& account);

    /// A password that is there already is not written again: a save deletes first, and a keychain that then refuses
    /// the new item would lose what it has. Fails with `KeychainError`.
    Result<void> save(const QString& account, const QString& password);

    /// Fails with `KeychainError`; that there is none is no failure.
    Result<void> remove(const QString& account);

    /// Whether a password that was to be removed may still be there, and is wanted by no later save.
    bool isAnyLeft() const { return !m_leftEntry.isEmpty(); }

    /// Has the desktop ask the user to unlock the keychain, if what the access needs is locked. False when it stays
    /// locked. Asks nothing for an empty account.
    QCoro::Task<bool> unlock(QString account, KeychainAccess access);

private:
    KeychainStore m_keychain;
    QString m_leftEntry;
};

} // namespace Varnel
