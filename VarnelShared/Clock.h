#pragma once

#include <VarnelShared/Timestamp.h>

#include <functional>
#include <memory>

namespace Varnel {

/// Tells the current time. A port: tests turn it by hand.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    virtual Timestamp now() const = 0;
};

/// A pending one-shot timer. Destroying it invalidates it: it then never fires. It may be destroyed from within
/// its own callback.
class OneShotTimer {
public:
    OneShotTimer() = default;
    OneShotTimer(const OneShotTimer&) = delete;
    OneShotTimer& operator=(const OneShotTimer&) = delete;
    virtual ~OneShotTimer() = default;
};

/// Makes one-shot timers. A port: tests turn time by hand.
class TimerFactory {
public:
    TimerFactory() = default;
    TimerFactory(const TimerFactory&) = delete;
    TimerFactory& operator=(const TimerFactory&) = delete;
    virtual ~TimerFactory() = default;

    /// Calls `fire` once from the event loop after `delay`, at the earliest on the next turn of the loop.
    virtual std::unique_ptr<OneShotTimer> schedule(Seconds delay, std::function<void()> fire) = 0;

    /// Makes up for a sleep of the machine, during which timers stand still: each pending timer whose due time has
    /// passed by the wall clock fires on the next turn of the event loop, the others at their due time.
    virtual void fireOverdue() = 0;
};

} // namespace Varnel
