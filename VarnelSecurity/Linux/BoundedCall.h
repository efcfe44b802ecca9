#pragma once

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

} // namespace Varnel
