#pragma once

#include <VarnelShared/Clock.h>

#include <QPointer>

#include <vector>

namespace Varnel {

/// The system's wall clock.
class SystemClock final : public Clock {
public:
    Timestamp now() const override;
};

class SystemTimer;

/// Precise timers of the event loop. They run on the monotonic clock, which stands still while the machine sleeps;
/// `fireOverdue` makes up for that. Lives on the main thread. Its timers may outlive it: they go on, but `fireOverdue`
/// reaches them no more.
class SystemTimers final : public TimerFactory {
public:
    /// `clock` tells the wall-clock time at which a timer is due; it must outlive this object.
    explicit SystemTimers(const Clock& clock);
    ~SystemTimers() override;

    std::unique_ptr<OneShotTimer> schedule(Seconds delay, std::function<void()> fire) override;
    void fireOverdue() override;

private:
    const Clock& m_clock;
    std::vector<QPointer<SystemTimer>> m_pending;
};

} // namespace Varnel
