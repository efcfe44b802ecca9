#include <VarnelShared/SystemTime.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(SystemTimers, FireOnceFromTheEventLoopAndNotAfterInvalidation) {
    SystemClock clock;
    SystemTimers timers(clock);
    int fired = 0;
    std::unique_ptr<OneShotTimer> timer;
    timer = timers.schedule(Seconds(0), [&] {
        ++fired;
        timer.reset(); // from within its own callback
    });
    auto invalidated = timers.schedule(Seconds(0), [&] { fired += 100; });
    EXPECT_EQ(fired, 0);
    invalidated.reset();
    EXPECT_TRUE(Testing::waitUntil([&] { return fired == 1; }));
    Testing::settle();
    EXPECT_EQ(fired, 1);
}

TEST(SystemTimers, AfterASleepOnlyWhatIsOverdueFiresAtOnce) {
    Testing::HandTurnedTime wallClock;
    SystemTimers timers(wallClock);
    int fired = 0;
    const auto overdue = timers.schedule(Seconds(300), [&] { fired += 1; });
    const auto later = timers.schedule(Seconds(7200), [&] { fired += 100; });
    wallClock.jumpTo(wallClock.now() + Seconds(3600));
    timers.fireOverdue();
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(Testing::waitUntil([&] { return fired != 0; }));
    timers.fireOverdue();
    Testing::settle();
    EXPECT_EQ(fired, 1);
}

TEST(SystemTimers, AClockThatWasSetBackPutsNothingOff) {
    Testing::HandTurnedTime wallClock;
    SystemTimers timers(wallClock);
    bool hasFired = false;
    const auto timer = timers.schedule(Seconds(0.05), [&] { hasFired = true; });
    wallClock.jumpTo(wallClock.now() + Seconds(-3600));
    timers.fireOverdue();
    EXPECT_TRUE(Testing::waitUntil([&] { return hasFired; }));
}

} // namespace
} // namespace Varnel
