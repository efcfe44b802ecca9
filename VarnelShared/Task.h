#pragma once

#include <QCoroTask>

#include <functional>

namespace Varnel {

/// Queues `body` on the event loop of the main thread and owns its task to the end: nothing of `body` runs on the
/// spot. An exception that escapes the task is logged with `name` and goes no further.
///
/// `body` is a plain function that calls a coroutine, never a coroutine itself when it captures anything; what it
/// captures is kept until the task ends. Without an application object nothing is run.
void startTask(const char* name, std::function<QCoro::Task<void>()> body);

/// A task that has nothing to do, for a `body` whose object is gone.
QCoro::Task<void> completedTask();

} // namespace Varnel
