#pragma once

#include <VarnelShared/Clock.h>
#include <VarnelShared/PowerReading.h>
#include <VarnelShared/Result.h>

#include <QCoroTask>

#include <functional>
#include <memory>

namespace Varnel {

/// Calls a fetch operation again and again, hands each outcome on, and waits longer after consecutive failures: the
/// interval times 2, 4, 8 and, from the fourth failure on, 16; one success returns to the interval.
///
/// Must be held by a `std::shared_ptr`. Timers and queued polls hold it weakly: once it is released, they do nothing.
/// A poll in flight keeps it alive until its fetch has completed and its update handler was called. A `std::exception`
/// that leaves a handler never ends the polling: one of the fetch is its outcome, as `URLError::Code::unknown`.
class PowerPollingService final : public std::enable_shared_from_this<PowerPollingService> {
public:
    using FetchHandler = std::function<QCoro::Task<Result<PowerReading>>()>;
    using UpdateHandler = std::function<void(Result<PowerReading>)>;

    /// Schedules nothing. `updateHandler` is called from the event loop exactly once per fetch, before the next
    /// timer is made; it may stop or release the service. `timers` must outlive the service.
    PowerPollingService(Seconds pollInterval, FetchHandler fetchHandler, UpdateHandler updateHandler,
                        TimerFactory& timers);

    /// The first poll comes 0.1 s later. Does nothing while running.
    void start();

    /// Drops the pending poll and forgets the failures. A fetch in flight is not cancelled: its outcome still goes
    /// to the update handler, but nothing is scheduled after it; a `start` meanwhile may run a second fetch beside it.
    void stop();

    /// Queues one poll on the event loop, if running. It is dropped when a fetch is in flight by then; otherwise the
    /// next regular poll comes one delay after it.
    void refreshNow();

    /// What made polls fail may have gone: repeats a poll that has failed, at once, and one that is in flight if it
    /// fails, unless the service is asked to wait by then. Does nothing where nothing fails.
    void repeatIfFailing();

    /// To be called by the update handler: the delay before the next poll is at least this long, but never longer than
    /// sixteen intervals. It counts for that one poll.
    void waitAtLeast(Seconds delay);

    /// The delay after so many failures in a row, moved back to `leastDelay`, but never behind sixteen intervals.
    static Seconds delayAfterFailures(Seconds pollInterval, int consecutiveFailures, Seconds leastDelay);

private:
    static void queuePoll(std::weak_ptr<PowerPollingService> service);
    static QCoro::Task<void> pollOnce(std::shared_ptr<PowerPollingService> self);
    static QCoro::Task<Result<PowerReading>> fetch(std::shared_ptr<PowerPollingService> self);
    void update(const Result<PowerReading>& result);
    void scheduleNextPoll(Seconds delay);

    const Seconds m_pollInterval;
    const FetchHandler m_fetchHandler;
    const UpdateHandler m_updateHandler;
    TimerFactory& m_timers;
    std::unique_ptr<OneShotTimer> m_timer;
    bool m_running = false;
    bool m_isPolling = false;
    int m_consecutiveFailures = 0;
    Seconds m_leastDelay{0};       ///< asked for with the newest outcome
    bool m_isRepeatWanted = false; ///< should the poll in flight fail
};

} // namespace Varnel
