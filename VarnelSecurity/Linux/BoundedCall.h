#pragma once

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

namespace Varnel {

/// Runs the operation on a thread of its own and waits for it no longer than `limit`; none when it took longer. It
/// is asked to stop then, but not waited for: it must own all that it uses.
template <typename Operation>
auto callWithin(std::chrono::milliseconds limit, Operation operation)
    -> std::optional<std::invoke_result_t<Operation, std::stop_token>> {
    using Outcome = std::invoke_result_t<Operation, std::stop_token>;
    std::stop_source stop;
    std::packaged_task<Outcome()> task(
        [operation = std::move(operation), token = stop.get_token()] { return operation(token); });
    std::future<Outcome> outcome = task.get_future();
    std::thread(std::move(task)).detach();
    if (outcome.wait_for(limit) == std::future_status::ready) {
        return outcome.get();
    }
    stop.request_stop();
    return std::nullopt;
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
            QTimer::singleShot(0, &m_turn, [this] { m_left = m_limit; });
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
    QObject m_turn;
};

} // namespace Varnel
