#pragma once

#include <VarnelPreferences/PreferencesHandlers.h>
#include <VarnelSecurity/KeychainStore.h>

#include <functional>
#include <memory>
#include <set>

namespace Varnel {

/// The password of an account in the keychain, under "password." and the account trimmed and in lower case: spellings
/// of one account that differ only in case share it. An empty account has none. Held by a `std::shared_ptr`: its tasks
/// keep it alive.
class StoredPassword final : public std::enable_shared_from_this<StoredPassword> {
public:
    /// Told what the user should know of the last `save` or removal: true for what went wrong, false for what no longer
    /// is. A failure is in the log, too.
    std::function<void(AccountNotice, bool)> onNotice = [](AccountNotice, bool) {};

    /// `services` must outlive this object.
    explicit StoredPassword(KeychainServices& services);

    /// None when there is none, when it is empty, when it cannot be read and when the keychain takes more than a
    /// moment.
    std::optional<QString> read(const QString& account);

    /// The same, for as long as the keychain needs.
    QCoro::Task<std::optional<QString>> readPatiently(QString account);

    /// Ends when the keychain has it, or has refused it; one that is removed meanwhile is not kept. A password that is
    /// there already is not written again: a save deletes first, and a keychain that then refuses the new item would
    /// lose what it has.
    QCoro::Task<void> save(QString account, QString password);

    /// False when it may still be there; that there is none is no failure.
    bool remove(const QString& account);

    /// Removes it at once where the keychain lets it, else after asking to unlock it, unless it was saved again by
    /// then.
    void forget(const QString& account);

    /// Has the desktop ask the user to unlock the keychain, if what the access needs is locked. False when it stays
    /// locked. Asks nothing for an empty account.
    QCoro::Task<bool> unlock(QString account, KeychainAccess access);

private:
    QCoro::Task<void> removeAfterUnlocking(QString account);

    KeychainStore m_keychain;
    std::set<QString> m_removedEntries; ///< since the last save of each began
    std::set<QString> m_leftEntries;    ///< were to be removed, may still be there, and are wanted by no later save
};

} // namespace Varnel
