#pragma once

#include <QCoroTask>

#include <functional>
#include <optional>
#include <utility>

namespace Varnel::Testing {

/// Runs the event loop until nothing is queued any more. Real time does not pass.
void settle();

/// Runs the event loop until `condition` holds, for real input and output on this machine; false when five seconds
/// (or `milliseconds`) have passed without it.
bool waitUntil(const std::function<bool()>& condition, int milliseconds = 5000);

/// Runs the event loop until the task has ended and gives its value; ends the test binary when it takes longer
/// than 60 seconds of real time.
template <typename T>
T await(QCoro::Task<T> task) {
    std::optional<T> value;
    task.then([&value](T result) { value.emplace(std::move(result)); });
    if (!waitUntil([&value] { return value.has_value(); }, 60000)) {
        qFatal("A task of the test did not end within 60 s");
    }
    return std::move(*value);
}

inline void await(QCoro::Task<void> task) {
    bool ended = false;
    task.then([&ended] { ended = true; });
    if (!waitUntil([&ended] { return ended; }, 60000)) {
        qFatal("A task of the test did not end within 60 s");
    }
}

} // namespace Varnel::Testing
