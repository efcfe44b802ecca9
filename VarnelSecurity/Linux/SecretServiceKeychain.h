#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <chrono>
#include <future>
#include <optional>
#include <stop_token>
#include <type_traits>

namespace Varnel {

/// The keychain as the desktop's Secret Service. Items have exactly the attributes `service` and `account` and are
/// matched by those two alone, so that `secret-tool store --label=… service S account A` and this class find each
/// other's items. New items go into the default collection.
///
/// `keychainNotAvailable` means that no such service is on the session bus and none can be started there. Each
/// operation runs on a thread of its own; one that takes too long is cancelled and left behind, and for a while
/// after it every other fails at once with `keychainServiceNotResponding`.
class SecretServiceKeychain final : public KeychainServices {
public:
    /// `promptLimit` is the time that the user has to answer when asked to unlock.
    explicit SecretServiceKeychain(std::chrono::milliseconds promptLimit = std::chrono::minutes(2));

    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override;
    KeychainMatch copyMatching(const KeychainQuery& query) override;
    KeychainStatus deleteMatching(const KeychainQuery& query) override;

    /// Where nothing matches and the default collection is locked, that one is unlocked: some services do not tell
    /// what a locked collection holds. For writing, a default collection is made where there is none. A prompt
    /// that was not answered in time stays on the screen, because the keyring daemon does not survive its withdrawal:
    /// a further call then waits for that one, so that the user is never asked twice at a time.
    QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) override;

private:
    template <typename Operation>
    auto bounded(Operation operation) -> std::optional<std::invoke_result_t<Operation, std::stop_token>>;

    const std::chrono::milliseconds m_promptLimit;
    std::chrono::steady_clock::time_point m_restsUntil;
    std::shared_future<bool> m_unlocking;
};

} // namespace Varnel
