#include <VarnelSecurity/Linux/SecretServiceKeychain.h>

#include <VarnelSecurity/Linux/BoundedCall.h>
#include <VarnelSecurity/Linux/SecretServiceCalls.h>

#include <QCoroFuture>
#include <QPromise>

#include <memory>
#include <utility>

namespace Varnel {

namespace {
using std::chrono::milliseconds;

/// What the main thread waits at most, with room left for what comes before and after.
constexpr milliseconds waitLimit(1400);
/// How long a service that did not answer is left alone, so that saving, which takes two operations, waits once.
constexpr std::chrono::seconds restAfterSilence(10);

bool unlockNow(milliseconds promptLimit, const KeychainQuery& query, KeychainAccess access) {
    const auto checked = callWithin(waitLimit, [query, access](const std::stop_token& stop) {
        return SecretServiceCalls::check(stop, query, access);
    });
    if (checked != keychainInteractionNotAllowed) {
        return checked == keychainSuccess || checked == keychainNotAvailable;
    }
    const auto asked = callWithin(promptLimit, [query, access](const std::stop_token& stop) {
        return SecretServiceCalls::ask(stop, query, access);
    });
    return asked.value_or(false);
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
    if (!m_unlock.isRunning()) {
        auto promise = std::make_shared<QPromise<bool>>();
        promise->start();
        m_unlock = promise->future();
        m_restsUntil = {}; // the service gets another chance
        std::thread([promise, limit = m_promptLimit, query, access] {
            promise->addResult(unlockNow(limit, query, access));
            promise->finish();
        }).detach();
    }
    return resultOf(m_unlock);
}

} // namespace Varnel
