#include "HandTurnedTime.h"

#include "EventLoop.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace Varnel::Testing {

/// Removes its entry when it is invalidated. The time must outlive its timers.
class HandTurnedTime::Timer final : public OneShotTimer {
public:
    Timer(std::list<Entry>& entries, std::size_t number)
        : m_entries(entries)
        , m_number(number) {}
    ~Timer() override {
        m_entries.remove_if([this](const Entry& entry) { return entry.number == m_number; });
    }

private:
    std::list<Entry>& m_entries;
    std::size_t m_number;
};

HandTurnedTime::HandTurnedTime(const QDateTime& start)
    : m_now(Timestamp::fromDateTime(start)) {}

std::unique_ptr<OneShotTimer> HandTurnedTime::schedule(Seconds delay, std::function<void()> fire) {
    m_scheduledDelays.push_back(delay.count());
    const std::size_t number = ++m_timersMade;
    m_entries.push_back({number, m_now + delay, std::move(fire)});
    return std::make_unique<Timer>(m_entries, number);
}

void HandTurnedTime::fireOverdue() {
    QMetaObject::invokeMethod(QCoreApplication::instance(), [this] { advance(Seconds(0)); }, Qt::QueuedConnection);
}

void HandTurnedTime::advance(Seconds duration) {
    const Timestamp target = m_now + duration;
    settle();
    for (;;) {
        const auto next = std::min_element(m_entries.begin(), m_entries.end(),
                                           [](const Entry& a, const Entry& b) { return a.due < b.due; });
        if (next == m_entries.end() || next->due > target) {
            break;
        }
        m_now = std::max(m_now, next->due);
        // The entry leaves the list first: its owner may destroy the timer, or schedule another, while it fires.
        std::list<Entry> firing;
        firing.splice(firing.begin(), m_entries, next);
        firing.front().fire();
        settle();
    }
    m_now = target;
}

void HandTurnedTime::advanceToNextTimer() {
    const auto next = std::min_element(m_entries.begin(), m_entries.end(),
                                       [](const Entry& a, const Entry& b) { return a.due < b.due; });
    if (next != m_entries.end()) {
        advance(std::max(next->due - m_now, Seconds(0)));
    }
}

} // namespace Varnel::Testing
