#include <VarnelSecurity/Linux/SecretServiceKeychain.h>

#include <VarnelSecurity/Linux/BoundedCall.h>
#include <VarnelSecurity/Linux/SecretServiceCalls.h>

#include <QCoroFuture>
#include <QPromise>

#include <thread>
#include <utility>

namespace Varnel {

namespace {
using std::chrono::milliseconds;

/// What the main thread waits at most, with room left for what comes before and after.
constexpr milliseconds waitLimit(1400);
/// How long a service that did not answer is left alone, so that saving, which takes two operations, waits once.
constexpr std::chrono::seconds restAfterSilence(10);

/// Returns when the user has answered, if there is anything to ask.
bool unlockNow(const KeychainQuery& query, KeychainAccess access) {
    const auto checked = callWithin(waitLimit, [query, access](const std::stop_token& stop) {
        return SecretServiceCalls::check(stop, query, access);
    });
    if (checked == keychainInteractionNotAllowed) {
        return SecretServiceCalls::ask(query, access);
    }
    return checked == keychainSuccess || checked == keychainNotAvailable;
}

QCoro::Task<bool> resultOf(QFuture<bool> future) {
    co_return co_await future;
}
} // namespace

SecretServiceKeychain::SecretServiceKeychain(milliseconds promptLimit)
    : m_promptLimit(promptLimit) {}

KeychainStatus SecretServiceKeychain::add(const KeychainQuery& query, const QByteArray& data) {
    return bounded([query, data](const std::stop_token& stop) { return SecretServiceCalls::store(stop, query, data); })
        .value_or(keychainServiceNotResponding);
}

KeychainMatch SecretServiceKeychain::copyMatching(const KeychainQuery& query) {
    return bounded([query](const std::stop_token& stop) { return SecretServiceCalls::read(stop, query); })
        .value_or(KeychainMatch{keychainServiceNotResponding, {}});
}

KeychainStatus SecretServiceKeychain::deleteMatching(const KeychainQuery& query) {
    return bounded([query](const std::stop_token& stop) { return SecretServiceCalls::remove(stop, query); })
        .value_or(keychainServiceNotResponding);
}

template <typename Operation>
auto SecretServiceKeychain::bounded(Operation operation)
    -> std::optional<std::invoke_result_t<Operation, std::stop_token>> {
    if (std::chrono::steady_clock::now() < m_restsUntil) {
        return std::nullopt;
    }
    auto outcome = callWithin(waitLimit, std::move(operation));
    if (!outcome) {
        m_restsUntil = std::chrono::steady_clock::now() + restAfterSilence;
    }
    return outcome;
}

QCoro::Task<bool> SecretServiceKeychain::unlock(KeychainQuery query, KeychainAccess access) {
    if (!m_unlocking.valid() || m_unlocking.wait_for(milliseconds(0)) == std::future_status::ready) {
        m_restsUntil = {}; // the service gets another chance
        std::packaged_task<bool()> task([query, access] { return unlockNow(query, access); });
        m_unlocking = task.get_future().share();
        std::thread(std::move(task)).detach();
    }
    QPromise<bool> promise;
    promise.start();
    QFuture<bool> answer = promise.future();
    std::thread([promise = std::move(promise), unlocking = m_unlocking, limit = m_promptLimit]() mutable {
        promise.addResult(unlocking.wait_for(limit) == std::future_status::ready && unlocking.get());
        promise.finish();
    }).detach();
    return resultOf(std::move(answer));
}

} // namespace Varnel
