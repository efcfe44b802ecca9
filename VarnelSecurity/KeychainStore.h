#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <VarnelShared/Result.h>

#include <functional>
#include <optional>
#include <utility>

namespace Varnel {

/// Why a secret could not be saved, read or deleted.
struct KeychainError {
    enum class Kind { unexpectedStatus, encodingFailed, decodingFailed };

    Kind kind;
    KeychainStatus status = keychainSuccess; ///< for `unexpectedStatus` alone

    static KeychainError unexpectedStatus(KeychainStatus status) { return {Kind::unexpectedStatus, status}; }
    static KeychainError encodingFailed() { return {Kind::encodingFailed}; }
    static KeychainError decodingFailed() { return {Kind::decodingFailed}; }

    QString localizedDescription() const;

    bool operator==(const KeychainError&) const = default;
};

/// Keeps secrets as generic-password items in the user's keychain, one by account, as UTF-8 without a terminator.
/// All failures are `KeychainError`; nothing is logged.
class KeychainStore final {
public:
    /// `service` is shared by all items of the application; items of another service are neither read nor deleted.
    /// `services` must outlive the store.
    KeychainStore(const QString& service, KeychainServices& services);

    /// Replaces the account's item by deleting and adding: a failure may leave none, or the former one. Success means
    /// that this secret is what the next reading gives. Fails with `encodingFailed`, with everything as it was, for
    /// text that has no UTF-8 form.
    Result<void> saveSecret(const QString& secret, const QString& account);

    /// The account's secret, none when there is no item; an empty one is the empty text. Fails with `decodingFailed`
    /// for data that is not UTF-8.
    Result<std::optional<QString>> readSecret(const QString& account);

    /// Deletes the account's item. That there is none is no failure; any failure means that the secret may be left:
    /// `unexpectedStatus` tells whether the keychain was locked, gone or did not answer.
    Result<void> deleteSecret(const QString& account);

    /// Has the desktop ask the user to unlock the keychain, if what the access needs is locked. To be awaited before
    /// a secret is read, saved or deleted on the user's behalf; false counts as a failing read.
    QCoro::Task<bool> unlock(const QString& account, KeychainAccess access);

    /// Calls a function that uses the operations above, for as long as the keychain needs, and blocks nothing: see
    /// `KeychainServices::runPatiently`.
    QCoro::Task<void> runPatiently(std::function<void()> function) {
        return m_services.runPatiently(std::move(function));
    }

private:
    KeychainQuery query(const QString& account) const { return {m_service, account}; }

    const QString m_service;
    KeychainServices& m_services;
};

} // namespace Varnel
