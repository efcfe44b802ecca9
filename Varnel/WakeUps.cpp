#include <Varnel/WakeUps.h>

#include <VarnelShared/Logging.h>

#include <utility>

namespace Varnel {

namespace {
constexpr Seconds longestWaitForNetwork(15);
}

WakeUps::WakeUps(SystemEvents& events, TimerFactory& timers, std::function<void()> resumed,
                 std::function<void()> reachable)
    : m_events(events)
    , m_timers(timers)
    , m_resumed(std::move(resumed))
    , m_reachable(std::move(reachable)) {
    m_events.setResumeHandler([this] { onResume(); });
    m_events.setNetworkReachableHandler([this] {
        qCInfo(lcApp, "The network is reachable");
        onReachable();
    });
}

WakeUps::~WakeUps() {
    m_events.setResumeHandler([] {});
    m_events.setNetworkReachableHandler([] {});
}

void WakeUps::onResume() {
    qCInfo(lcApp, "The machine has woken from sleep");
    m_resumed();
    if (m_events.isNetworkReachable()) {
        onReachable();
    } else {
        m_timer = m_timers.schedule(longestWaitForNetwork, [this] { onReachable(); });
    }
}

void WakeUps::onReachable() {
    m_timer.reset();
    m_timers.fireOverdue();
    m_reachable();
}

} // namespace Varnel
