#include "ControllerBench.h"

#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::ControllerBench;
using Testing::waitUntil;

TEST(Day, TodaysSamplesComeBackAfterARestart) {
    ControllerBench bench;
    bench.launchConnected();
    const auto samples = bench.controller->todayOutputSamples();
    ASSERT_FALSE(samples.empty());
    bench.time.advance(Seconds(60));
    bench.launch();
    EXPECT_EQ(bench.controller->todayOutputSamples(), samples);
}

TEST(Day, TheDisplayEmptiesByItselfAtLocalMidnightAndOnlyOnce) {
    ControllerBench bench;
    bench.launchConnected();
    bench.simulator.behaviour().faults = {Simulator::Fault()}; // no reading arrives any more
    const Timestamp midnight = Calendar::startOfNextDay(bench.time.now()).value();
    bench.time.advance(midnight - bench.time.now() - Seconds(1));
    EXPECT_EQ(bench.controller->presentation().outputChartValues.size(), 1U);
    bench.time.advance(Seconds(1));
    EXPECT_TRUE(bench.controller->presentation().outputChartValues.empty());
    EXPECT_EQ(bench.controller->outputSamplesDayStart(), midnight);
    OutputHistoryStore store(bench.dataFolder.path(), QStringLiteral("com.varnel.menubar"));
    EXPECT_EQ(store.loadAllSnapshots(QStringLiteral("demo@example.com"), bench.controller->settings().stationID).size(),
              1U); // yesterday; an empty day is never written
}

TEST(Day, AThreeDaySleepCatchesUpOnceTheNetworkIsThere) {
    ControllerBench bench;
    bench.launchConnected();
    bench.simulator.behaviour().powerScript = {0.25};
    bench.time.jumpTo(bench.time.now() + Seconds(3 * 86400.0));
    bench.systemEvents.isReachable = false;
    bench.systemEvents.resume();
    EXPECT_TRUE(bench.controller->todayOutputSamples().empty());
    Testing::settle();
    EXPECT_EQ(bench.title(), QStringLiteral("3.42 kW"));
    bench.systemEvents.isReachable = true;
    bench.systemEvents.networkReachable();
    EXPECT_TRUE(bench.waitForTitle("0.25 kW"));
    EXPECT_EQ(bench.controller->todayOutputSamples().size(), 1U);
}

TEST(Day, WhereNobodyAnnouncesTheNetworkASleepCatchesUpAfterFifteenSeconds) {
    ControllerBench bench;
    bench.launchConnected();
    bench.simulator.behaviour().powerScript = {0.25};
    bench.time.jumpTo(bench.time.now() + Seconds(400));
    bench.systemEvents.isReachable = false;
    bench.systemEvents.resume();
    bench.time.advance(Seconds(15));
    EXPECT_TRUE(bench.waitForTitle("0.25 kW"));
}

TEST(Day, ProductionIsAnnouncedByItsOwnSwitchAlone) {
    ControllerBench bench;
    bench.storeAccount();
    AppSettings settings = bench.storedSettings();
    settings.notifyOnProductionStart = true;
    settings.notifyOnProductionEnd = true;
    AppSettingsStore(bench.userDefaults).save(settings);
    bench.simulator.behaviour().powerScript = {0.0, 1.5, -0.01, -0.01};
    bench.launch();
    for (const char* title : {"0 W", "1.50 kW", "0 W"}) {
        EXPECT_TRUE(bench.waitForTitle(title));
        Testing::settle();
        bench.time.advance(Seconds(300));
    }
    EXPECT_TRUE(waitUntil([&] { return bench.notificationCenter->added.size() == 2; }));
    EXPECT_EQ(bench.notificationCenter->added.front().title, QStringLiteral("Production Started"));
    EXPECT_EQ(bench.notificationCenter->added.back().title, QStringLiteral("Production Ended"));
}

} // namespace
} // namespace Varnel
