#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <QFuture>
#include <QObject>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <future>
#include <optional>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace Varnel {

/// Runs the operation on a thread of its own and waits for it no longer than `limit`, nor once `wanted` is stopped;
/// none when it took longer. It is asked to stop then, but not waited for: it must own all that it uses.
template <typename Operation>
auto callWithin(std::chrono::milliseconds limit, Operation operation, const std::stop_token& wanted = {})
    -> std::optional<std::invoke_result_t<Operation, std::stop_token>> {
    using Outcome = std::invoke_result_t<Operation, std::stop_token>;
    std::stop_source stop;
    std::packaged_task<Outcome()> task(
        [operation = std::move(operation), token = stop.get_token()] { return operation(token); });
    std::future<Outcome> outcome = task.get_future();
    std::thread(std::move(task)).detach();
    const auto end = std::chrono::steady_clock::now() + limit;
    const std::chrono::milliseconds step = wanted.stop_possible() ? std::chrono::milliseconds(20) : limit;
    while (outcome.wait_for(step) != std::future_status::ready) {
        if (wanted.stop_requested() || std::chrono::steady_clock::now() >= end) {
            stop.request_stop();
            return std::nullopt;
        }
    }
    return outcome.get();
}

/// Such calls from the main thread, which together wait no longer than one limit within one turn of its event loop:
/// what the user notices is how long the thread stands still, not how many calls that took.
class CallsWithinTurn {
public:
    explicit CallsWithinTurn(std::chrono::milliseconds limit)
        : m_limit(limit)
        , m_left(limit) {}

    /// None when the operation took longer than what is left of the limit, or was not begun because nothing is left.
    template <typename Operation>
    auto call(Operation operation) -> std::optional<std::invoke_result_t<Operation, std::stop_token>> {
        if (m_left.count() == 0) {
            return std::nullopt;
        }
        if (m_left == m_limit) {
            QTimer::singleShot(0, &m_context, [this] { m_left = m_limit; });
        }
        const auto begin = std::chrono::steady_clock::now();
        auto outcome = callWithin(m_left, std::move(operation));
        const auto taken = std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
        m_left = std::max(m_left - taken, std::chrono::milliseconds(0));
        return outcome;
    }

private:
    const std::chrono::milliseconds m_limit;
    std::chrono::milliseconds m_left;
    QObject m_context;
};

/// The keychain as the desktop's Secret Service. Items have exactly the attributes `service` and `account` and are
/// matched by those two alone, so that `secret-tool store --label=… service S account A` and this class find each
/// other's items. New items go into the default collection.
///
/// `keychainNotAvailable` means that no such service is on the session bus and none can be started there. Each
/// operation runs on a thread of its own; one that takes too long is cancelled and left behind, and for a while
/// after it every other fails at once with `keychainServiceNotResponding`. The limit is for all operations of one turn
/// of the event loop together, in which the main thread stands still.
class SecretServiceKeychain final : public KeychainServices {
public:
    /// `promptLimit` is the time that the user has to answer when asked to unlock.
    explicit SecretServiceKeychain(std::chrono::milliseconds promptLimit = std::chrono::minutes(2));
    ~SecretServiceKeychain() override { endPatientCalls(); }

    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override;
    KeychainMatch copyMatching(const KeychainQuery& query) override;
    KeychainStatus deleteMatching(const KeychainQuery& query) override;

    /// Where nothing matches and the default collection is locked, that one is unlocked: some services do not tell
    /// what a locked collection holds. For writing, a default collection is made where there is none. A prompt
    /// that was not answered in time stays on the screen, because the keyring daemon does not survive its withdrawal:
    /// a further call for the same then gets its answer, and one for something else that must ask too waits for it, so
    /// that the user is never asked twice at a time. A service that has yet to start is given time for it.
    QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) override;
    QCoro::Task<void> runPatiently(std::function<void()> function) override;

    /// Ends what `runPatiently` has begun, within a moment; its tasks never end then. To be called before anything that
    /// those functions use is gone, at the latest by the destructor.
    void endPatientCalls();

private:
    struct Unlocking {
        KeychainQuery query;
        KeychainAccess access;
        std::shared_future<bool> answer;

        bool isPending() const { return answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready; }
    };

    template <typename Operation>
    auto bounded(Operation operation) -> std::optional<std::invoke_result_t<Operation, std::stop_token>>;
    std::shared_future<bool> unlocking(const KeychainQuery& query, KeychainAccess access);

    const std::chrono::milliseconds m_promptLimit;
    std::chrono::steady_clock::time_point m_restsUntil;
    CallsWithinTurn m_calls;
    std::vector<Unlocking> m_unlocking;
    std::stop_source m_patience;
    std::vector<std::pair<std::jthread, QFuture<bool>>> m_patient; ///< each with its end
};

} // namespace Varnel
