#include "ControllerBench.h"

#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::waitUntil;

class DayTest : public testing::Test, protected Testing::ControllerBench {};

TEST_F(DayTest, TheDisplayEmptiesByItselfAtLocalMidnightAndOnlyOnce) {
    launchConnected();
    simulator.behaviour().faults = {Simulator::Fault()}; // no reading arrives any more
    const Timestamp midnight = Calendar::startOfNextDay(time.now()).value();
    time.advance(midnight - time.now() - Seconds(1));
    EXPECT_EQ(controller->presentation().outputChartValues.size(), 1U);
    time.advance(Seconds(1));
    EXPECT_TRUE(controller->presentation().outputChartValues.empty());
    EXPECT_EQ(controller->todayOutput().dayStart(), midnight);
    OutputHistoryStore store(dataFolder.path(), QStringLiteral("com.varnel.menubar"));
    EXPECT_EQ(store.loadAllSnapshots(QStringLiteral("demo@example.com"), controller->settings().stationID).size(),
              1U); // yesterday; an empty day is never written
}

TEST_F(DayTest, AThreeDaySleepCatchesUpOnceTheNetworkIsThere) {
    launchConnected();
    simulator.behaviour().powerScript = {0.25};
    time.jumpTo(time.now() + Seconds(3 * 86400.0));
    systemEvents.isReachable = false;
    systemEvents.resume();
    EXPECT_TRUE(controller->todayOutput().samples().empty());
    Testing::settle();
    EXPECT_EQ(title(), QStringLiteral("3.42 kW"));
    systemEvents.isReachable = true;
    systemEvents.networkReachable();
    EXPECT_TRUE(waitForTitle("0.25 kW"));
    EXPECT_EQ(controller->todayOutput().samples().size(), 1U);
}

TEST_F(DayTest, WhereNobodyAnnouncesTheNetworkASleepCatchesUpAfterFifteenSeconds) {
    launchConnected();
    simulator.behaviour().powerScript = {0.25};
    time.jumpTo(time.now() + Seconds(400));
    systemEvents.isReachable = false;
    systemEvents.resume();
    time.advance(Seconds(15));
    EXPECT_TRUE(waitForTitle("0.25 kW"));
}

TEST_F(DayTest, ProductionIsAnnouncedByItsOwnSwitchAlone) {
    storeAccount();
    AppSettings settings = storedSettings();
    settings.notifyOnProductionStart = true;
    settings.notifyOnProductionEnd = true;
    AppSettingsStore(userDefaults).save(settings);
    simulator.behaviour().powerScript = {0.0, 1.5, -0.01, -0.01};
    launch();
    for (const char* title : {"0 W", "1.50 kW", "0 W"}) {
        EXPECT_TRUE(waitForTitle(title));
        Testing::settle();
        time.advance(Seconds(300));
    }
    EXPECT_TRUE(waitUntil([&] { return notificationCenter->added.size() == 2; }));
    EXPECT_EQ(notificationCenter->added.front().title, QStringLiteral("Production Started"));
    EXPECT_EQ(notificationCenter->added.back().title, QStringLiteral("Production Ended"));
}

TEST_F(DayTest, EachMorningStartsAndRisesAnewAfterANightOfZeroWattsOrOneThatNobodySaw) {
    storeAccount();
    AppSettings settings = storedSettings();
    settings.notifyOnProductionStart = true;
    settings.notifyOnProductionEnd = true;
    settings.notifyOnProductionRiseAboveOneKilowatt = true;
    AppSettingsStore(userDefaults).save(settings);
    launch();
    ASSERT_TRUE(waitForTitle("3.42 kW"));
    simulator.behaviour().faults = {Simulator::Fault()}; // the readings come from here
    const QString station = controller->settings().stationID;
    const Timestamp firstDay = Calendar::startOfDay(time.now());
    for (int day = 1; day <= 3; ++day) {
        const Timestamp morning = firstDay + Seconds(day * 86400.0 + 6 * 3600);
        for (const auto& [hours, kilowatts] :
             {std::pair(-10, day == 2 ? 1.5 : 0.0), {0, 0.0}, {1, 0.4}, {3, 1.2}, {4, 0.9}, {5, 1.3}}) {
            time.advance(morning + Seconds(hours * 3600.0) - time.now());
            controller->handlePollResult(PowerReading{kilowatts, 5.0, station, time.now()});
        }
        Testing::settle();
        ASSERT_EQ(notificationCenter->added.size(), 2U * static_cast<std::size_t>(day)) << "day " << day;
    }
    for (std::size_t i = 0; i < notificationCenter->added.size(); ++i) {
        EXPECT_EQ(notificationCenter->added[i].title,
                  i % 2 == 0 ? QStringLiteral("Production Started") : QStringLiteral("Production Above 1.00 kW"));
    }
}

TEST_F(DayTest, ASystemSizeThatCouldNotBeHadIsAskedForAgainTheNextDay) {
    launchConnected(); // and knows its station from now on
    Simulator::Fault fault;
    fault.path = QStringLiteral("*User*"); // the lists of stations
    simulator.behaviour().faults = {fault};
    launch();
    ASSERT_TRUE(waitForTitle("3.42 kW"));
    EXPECT_EQ(controller->values().systemSizeKW, std::nullopt);
    simulator.behaviour().faults = {};
    const std::size_t before = requestCount();
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForRequests(before + 1));
    Testing::settle();
    EXPECT_EQ(controller->values().systemSizeKW, std::nullopt) << "not with each reading";
    time.advance(Calendar::startOfNextDay(time.now()).value() - time.now() + Seconds(300));
    EXPECT_TRUE(waitUntil([this] { return controller->values().systemSizeKW.has_value(); }));
}

TEST_F(DayTest, TodaysEnergyIsUnknownUntilAReadingOfTheDayBringsIt) {
    launchConnected();
    simulator.behaviour().faults = {Simulator::Fault()};
    EXPECT_NE(controller->presentation().todayOutputValue, QStringLiteral("--"));
    time.advance(Calendar::startOfNextDay(time.now()).value() - time.now());
    EXPECT_EQ(controller->presentation().todayOutputValue, QStringLiteral("--"));
    EXPECT_TRUE(waitUntil([&] {
        return controller->presentation().outdatedLine == QStringLiteral("Last reading on 1 Jun 2026 at 12:00");
    }));
    EXPECT_EQ(title(), QStringLiteral("3.42 kW"));
}

TEST_F(DayTest, NeitherARestartNorAClockThatIsADayBehindForAMomentLosesASample) {
    launchConnected();
    simulator.behaviour().faults = {Simulator::Fault()};
    const QString station = controller->settings().stationID;
    const auto readAt = [&](Timestamp instant) {
        time.jumpTo(instant);
        controller->handlePollResult(PowerReading{1.0, 5.0, station, instant});
    };
    const Timestamp noon = time.now();
    for (int i = 1; i < 6; ++i) {
        readAt(noon + Seconds(300.0 * i));
    }
    readAt(noon - Seconds(86400 - 1800.0));
    readAt(noon + Seconds(1800));
    const auto samples = controller->todayOutput().samples();
    EXPECT_EQ(samples.size(), 7U);
    launch();
    EXPECT_EQ(controller->todayOutput().samples(), samples);
}

} // namespace
} // namespace Varnel
