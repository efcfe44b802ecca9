#include <VarnelShared/SystemTime.h>

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace Varnel {

Timestamp SystemClock::now() const {
    const Seconds sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {sinceUnixEpoch.count() - Timestamp::referenceDateUnixSeconds};
}

/// One timer of the event loop, with the times at which it is due by the wall clock and by the monotonic clock.
class SystemTimer final : public QObject, public OneShotTimer {
public:
    SystemTimer(Timestamp due, Seconds delay, std::function<void()> fire)
        : m_due(due)
        , m_deadline(std::chrono::ceil<std::chrono::milliseconds>(delay), Qt::PreciseTimer)
        , m_fire(std::move(fire)) {}

    /// Arms, or arms again, for the due time as seen from `now`; a due time that has passed fires on the next turn. A
    /// wall clock that was set back puts nothing off.
    void arm(Timestamp now) {
        if (!m_fire) {
            return;
        }
        // An event-loop timer counts milliseconds in an int: 24 days are the most it can wait.
        constexpr Seconds longest = std::chrono::hours(24 * 24);
        const Seconds left = std::min<Seconds>(longest, std::chrono::milliseconds(m_deadline.remainingTime()));
        const Seconds delay = std::clamp(m_due - now, Seconds(0), left);
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(delay);
        m_timer.start(static_cast<int>(milliseconds.count()), Qt::PreciseTimer, this);
    }

protected:
    void timerEvent(QTimerEvent* /*event*/) override {
        m_timer.stop();
        // The callback may destroy this object: nothing of it is touched afterwards.
        const auto fire = std::exchange(m_fire, nullptr);
        fire();
    }

private:
    Timestamp m_due;
    QDeadlineTimer m_deadline;
    std::function<void()> m_fire;
    QBasicTimer m_timer;
};

SystemTimers::SystemTimers(const Clock& clock)
    : m_clock(clock) {}

SystemTimers::~SystemTimers() = default;

std::unique_ptr<OneShotTimer> SystemTimers::schedule(Seconds delay, std::function<void()> fire) {
    std::erase_if(m_pending, [](const QPointer<SystemTimer>& timer) { return timer.isNull(); });
    const Timestamp now = m_clock.now();
    auto timer = std::make_unique<SystemTimer>(now + delay, delay, std::move(fire));
    timer->arm(now);
    m_pending.emplace_back(timer.get());
    return timer;
}

void SystemTimers::fireOverdue() {
    const Timestamp now = m_clock.now();
    for (const QPointer<SystemTimer>& timer : m_pending) {
        if (timer) {
            timer->arm(now);
        }
    }
}

} // namespace Varnel
