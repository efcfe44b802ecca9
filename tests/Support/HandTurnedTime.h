#pragma once

#include <VarnelShared/Clock.h>

#include <QDateTime>

#include <list>
#include <vector>

namespace Varnel::Testing {

/// A local time of June 2026.
inline Timestamp june(int day, int hour, int minute, double seconds = 0) {
    return Timestamp::fromDateTime(QDateTime(QDate(2026, 6, day), QTime(hour, minute))) + Seconds(seconds);
}

/// A clock and its timers, turned by hand. Each timer fires when `advance` passes its due time, in due order, with
/// the event loop settled after each.
class HandTurnedTime final : public Clock, public TimerFactory {
public:
    explicit HandTurnedTime(const QDateTime& start = QDateTime(QDate(2026, 6, 1), QTime(12, 0)));

    Timestamp now() const override { return m_now; }
    std::unique_ptr<OneShotTimer> schedule(Seconds delay, std::function<void()> fire) override;
    void fireOverdue() override;

    /// Passes `duration` and fires what becomes due on the way.
    void advance(Seconds duration);

    /// Passes what is left until the next timer is due, and fires it; does nothing without one.
    void advanceToNextTimer();

    /// Turns the clock without firing anything, as a machine does that sleeps or whose clock is set.
    void jumpTo(Timestamp instant) { m_now = instant; }

    /// Every delay that was asked for, in seconds, in order.
    const std::vector<double>& scheduledDelays() const { return m_scheduledDelays; }
    void forgetScheduledDelays() { m_scheduledDelays.clear(); }

    /// The number of timers that have neither fired nor been invalidated.
    std::size_t pendingTimers() const { return m_entries.size(); }

private:
    struct Entry {
        std::size_t number; ///< names the timer; the address of an entry that has fired may be another's by now
        Timestamp due;
        std::function<void()> fire;
    };
    class Timer;

    Timestamp m_now;
    std::vector<double> m_scheduledDelays;
    std::size_t m_timersMade = 0;
    std::list<Entry> m_entries;
};

} // namespace Varnel::Testing
