#pragma once

#include <Varnel/PlatformServices.h>

namespace Varnel {

/// Tells when work that a sleep or a missing network held up can go on.
class WakeUps {
public:
    /// `resumed` is called when the machine has woken, `reachable` when the network is there again: after a sleep as
    /// soon as it is, or 15 s later where nobody tells. Both ports must outlive this object.
    WakeUps(SystemEvents& events, TimerFactory& timers, std::function<void()> resumed, std::function<void()> reachable);
    ~WakeUps();
    WakeUps(const WakeUps&) = delete;
    WakeUps& operator=(const WakeUps&) = delete;

private:
    void onResume();
    void onReachable();

    SystemEvents& m_events;
    TimerFactory& m_timers;
    std::function<void()> m_resumed;
    std::function<void()> m_reachable;
    std::unique_ptr<OneShotTimer> m_timer; ///< set while a wake-up waits for the network
};

} // namespace Varnel
