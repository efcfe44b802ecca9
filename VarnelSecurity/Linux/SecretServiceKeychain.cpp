#include <VarnelSecurity/Linux/SecretServiceKeychain.h>

#include <VarnelSecurity/Linux/SecretServiceCalls.h>

#include <QCoroFuture>
#include <QPromise>

#include <algorithm>
#include <iterator>
#include <thread>
#include <utility>

namespace Varnel {

namespace {
using std::chrono::milliseconds;

/// What the main thread waits at most, with room left for what comes before and after.
constexpr milliseconds waitLimit(1400);
/// What a thread that holds nobody up waits before it asks the user: enough for a service that the bus has to start.
constexpr std::chrono::seconds startLimit(20);
/// How long a service that did not answer is left alone.
constexpr std::chrono::seconds restAfterSilence(10);

/// Set on the threads of `runPatiently`: what ends the patience.
thread_local std::stop_token patience;

KeychainStatus checkNow(const KeychainQuery& query, KeychainAccess access) {
    const auto checked = callWithin(startLimit, [query, access](const std::stop_token& stop) {
        return SecretServiceCalls::check(stop, query, access);
    });
    return checked.value_or(keychainServiceNotResponding);
}

/// Returns when the user has answered, if there is anything to ask. Whoever is asked something `before` answers that
/// first, which may be all that it takes.
bool unlockNow(const KeychainQuery& query, KeychainAccess access, const std::vector<std::shared_future<bool>>& before) {
    KeychainStatus status = checkNow(query, access);
    if (status == keychainInteractionNotAllowed && !before.empty()) {
        std::for_each(before.begin(), before.end(), [](const auto& pending) { pending.wait(); });
        status = checkNow(query, access);
    }
    if (status == keychainInteractionNotAllowed) {
        return SecretServiceCalls::ask(query, access);
    }
    return status == keychainSuccess || status == keychainNotAvailable;
}

QCoro::Task<bool> resultOf(QFuture<bool> future) {
    co_return co_await future;
}
} // namespace

SecretServiceKeychain::SecretServiceKeychain(milliseconds promptLimit)
    : m_promptLimit(promptLimit)
    , m_calls(waitLimit) {}

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
    if (patience.stop_possible()) { // this object's own state belongs to the main thread
        return patience.stop_requested() ? std::nullopt : callWithin(startLimit, std::move(operation), patience);
    }
    if (std::chrono::steady_clock::now() < m_restsUntil) {
        return std::nullopt;
    }
    auto outcome = m_calls.call(std::move(operation));
    if (!outcome) {
        m_restsUntil = std::chrono::steady_clock::now() + restAfterSilence;
    }
    return outcome;
}

QCoro::Task<void> SecretServiceKeychain::runPatiently(std::function<void()> function) {
    QPromise<bool> promise;
    promise.start();
    const QFuture<bool> ended = promise.future();
    m_restsUntil = {}; // the service gets another chance
    std::erase_if(m_patient, [](const auto& call) { return call.second.isFinished(); });
    std::jthread thread(
        [promise = std::move(promise), function = std::move(function), stop = m_patience.get_token()]() mutable {
            patience = stop;
            function();
            promise.addResult(true);
            promise.finish();
        });
    m_patient.emplace_back(std::move(thread), ended);
    co_await resultOf(ended);
}

void SecretServiceKeychain::endPatientCalls() {
    m_patience.request_stop();
    m_patient.clear(); // which waits for them
}

/// The pending one for the same, else a new one, which asks the user after whatever is pending.
std::shared_future<bool> SecretServiceKeychain::unlocking(const KeychainQuery& query, KeychainAccess access) {
    std::erase_if(m_unlocking, [](const Unlocking& one) { return !one.isPending(); });
    const auto same = std::find_if(m_unlocking.begin(), m_unlocking.end(),
                                   [&](const Unlocking& one) { return one.query == query && one.access == access; });
    if (same != m_unlocking.end()) {
        return same->answer;
    }
    std::vector<std::shared_future<bool>> before;
    std::transform(m_unlocking.begin(), m_unlocking.end(), std::back_inserter(before),
                   [](const Unlocking& one) { return one.answer; });
    m_restsUntil = {}; // the service gets another chance
    std::packaged_task<bool()> task([query, access, before] { return unlockNow(query, access, before); });
    m_unlocking.push_back({query, access, task.get_future().share()});
    std::thread(std::move(task)).detach();
    return m_unlocking.back().answer;
}

QCoro::Task<bool> SecretServiceKeychain::unlock(KeychainQuery query, KeychainAccess access) {
    QPromise<bool> promise;
    promise.start();
    QFuture<bool> answer = promise.future();
    std::thread([promise = std::move(promise), unlocking = unlocking(query, access), limit = m_promptLimit]() mutable {
        promise.addResult(unlocking.wait_for(limit) == std::future_status::ready && unlocking.get());
        promise.finish();
    }).detach();
    return resultOf(std::move(answer));
}

} // namespace Varnel
