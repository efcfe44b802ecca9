#pragma once

#include <VarnelShared/Result.h>
#include <VarnelShared/URLError.h>

#include <QCoroTask>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace Varnel {

/// Queues `body` on the event loop of the main thread and owns its task to the end: nothing of `body` runs on the
/// spot. An exception that escapes the task is logged with `name` and goes no further.
///
/// `body` is a plain function that calls a coroutine, never a coroutine itself when it captures anything; what it
/// captures is kept until the task ends. Without an application object nothing is run.
void startTask(const char* name, std::function<QCoro::Task<void>()> body);

/// What the task of an object that is gone gives: nothing, false, or a cancelled request.
template <typename T>
QCoro::Task<T> abandonedTask(std::type_identity<QCoro::Task<T>> /*kind*/) {
    if constexpr (std::is_same_v<T, bool>) {
        co_return false;
    } else if constexpr (std::is_void_v<T>) {
        co_return;
    } else {
        co_return failure(URLError{URLError::Code::cancelled, {}});
    }
}

/// A handler that calls `member` of the object with `bound` before the arguments of the call, as long as the object
/// lives; afterwards it does nothing, and where a task is expected of it gives `abandonedTask`. Holds the object
/// weakly.
template <typename Object, typename Member, typename... Bound>
auto ifAlive(std::weak_ptr<Object> object, Member member, Bound... bound) {
    return [object = std::move(object), member, bound...](auto&&... arguments) {
        using Returned = std::invoke_result_t<Member, Object&, const Bound&...,
                                              decltype(std::forward<decltype(arguments)>(arguments))...>;
        const std::shared_ptr<Object> self = object.lock();
        if (self) {
            return std::invoke(member, *self, bound..., std::forward<decltype(arguments)>(arguments)...);
        }
        if constexpr (!std::is_void_v<Returned>) {
            return abandonedTask(std::type_identity<Returned>());
        }
    };
}

} // namespace Varnel
