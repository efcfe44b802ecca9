#include "LongRun.h"

#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::ControllerBench;
using Testing::LongRun;

// bench/LongRuns.cpp does the same for whole weeks and for every way in which a session can end.

/// The hours in which the station delivers a few watts, and some in which it delivers thousands.
TEST(LongRun, AMorningShowsToTheWattWhatTheStationDelivers) {
    for (const Testing::StationScenario& scenario : Testing::stationScenarios()) {
        SCOPED_TRACE(scenario.name);
        ControllerBench bench;
        bench.time.jumpTo(Calendar::startOfDay(bench.time.now()) + Seconds(5.5 * 3600));
        Testing::prepare(bench, scenario);
        bench.storeAccount();
        bench.launch();
        LongRun run(bench);
        ASSERT_TRUE(run.playUntil(bench.time.now() + Seconds(3.5 * 3600)));
        EXPECT_EQ(run.tally().wrongTitles + run.tally().errorLines, 0) << qPrintable(run.tally().firstProblem);
        EXPECT_GE(run.tally().polls, 42);
    }
}

TEST(LongRun, ASessionThatEndsEveryFortyMinutesIsRenewedOnceAndUnseen) {
    for (const Testing::ExpiryScenario& scenario : Testing::expiryScenarios()) {
        SCOPED_TRACE(qPrintable(scenario.name()));
        ControllerBench bench;
        Testing::prepare(bench, scenario);
        bench.storeAccount();
        bench.launch();
        LongRun run(bench);
        ASSERT_TRUE(run.playUntil(bench.time.now() + Seconds(2 * 3600 + 60)));
        EXPECT_EQ(run.tally().errorLines, 0) << qPrintable(run.tally().firstProblem);
        EXPECT_EQ(run.tally().signIns, 1 + 3);
    }
}

} // namespace
} // namespace Varnel
