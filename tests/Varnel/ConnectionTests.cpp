#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QLoggingCategory>

namespace Varnel {
namespace {

using Testing::ControllerBench;
using Testing::settle;
using Testing::waitUntil;

TEST(Connection, AFirstLaunchSendsNothingAndAsksForTheAccount) {
    ControllerBench bench;
    bench.launch();
    settle();
    EXPECT_EQ(bench.title(), QStringLiteral("SEMS --"));
    EXPECT_NE(bench.controller->preferencesCoordinator().window(), nullptr);
    EXPECT_EQ(bench.controller->lastErrorMessage(), std::nullopt);
    EXPECT_EQ(bench.requestCount(), 0U);
    EXPECT_EQ(bench.userDefaults.saves, 0);
}

TEST(Connection, AStoredAccountConnectsPollsAndKeepsItsStation) {
    ControllerBench bench;
    bench.launchConnected();
    EXPECT_EQ(bench.controller->preferencesCoordinator().window(), nullptr);
    EXPECT_EQ(bench.item->toolTip, QStringLiteral("Current Output: 3.42 kW"));
    const QString station = bench.simulator.behaviour().stations.front().id;
    EXPECT_EQ(bench.controller->settings().stationID, station);
    EXPECT_EQ(bench.storedSettings().stationID, station);
    EXPECT_EQ(bench.controller->systemSizeKW(), bench.simulator.behaviour().stations.front().capacityKW);
    EXPECT_EQ(bench.controller->todayOutputSamples().size(), 1U);
    EXPECT_TRUE(bench.controller->presentation().showOutputChart);
    EXPECT_EQ(bench.simulator.log().maximumInFlight(), 1);
}

TEST(Connection, AStoredIntervalOutOfRangeIsSavedClamped) {
    for (const auto& [stored, clamped] : {std::pair(30, 300), std::pair(7200, 3600)}) {
        ControllerBench bench;
        bench.userDefaults.setData(QStringLiteral("varnel.settings.v1"),
                                   "{\"pollIntervalSeconds\":" + QByteArray::number(stored) + '}');
        bench.launch();
        EXPECT_EQ(bench.storedSettings().pollIntervalSeconds, clamped);
    }
}

TEST(Connection, WhatCannotBeTriedIsSaidWithoutARequest) {
    const struct {
        const char* account;
        const char* baseURL;
        const char* line;
    } rows[] = {
        {"  ", "", "SEMS account is required."},
        {"me", "not a URL", "Invalid SEMS base URL."},
        {"me", "www.example.com/api/", "Invalid SEMS base URL."},
    };
    for (const auto& row : rows) {
        ControllerBench bench;
        AppSettings settings;
        settings.account = QString::fromLatin1(row.account);
        settings.baseURL = QString::fromLatin1(row.baseURL);
        AppSettingsStore(bench.userDefaults).save(settings);
        bench.launch();
        Testing::await(bench.controller->authenticateAndStartPolling(QStringLiteral("secret")));
        EXPECT_EQ(bench.controller->lastErrorMessage(), QString::fromLatin1(row.line));
        EXPECT_EQ(bench.requestCount(), 0U);
    }
}

TEST(Connection, AWrongPasswordIsToldAndLeavesNothingConnected) {
    ControllerBench bench;
    bench.storeAccount();
    bench.simulator.behaviour().password = QStringLiteral("other");
    bench.launch();
    EXPECT_TRUE(bench.waitForError("Sign-in failed. Check email/password in Profile and reconnect."));
    EXPECT_FALSE(bench.controller->semsSession().has_value());
    EXPECT_FALSE(bench.controller->isPolling());
}

TEST(Connection, AnExpiredSessionIsRenewedWithoutAMessage) {
    ControllerBench bench;
    bench.launchConnected();
    bench.simulator.behaviour().powerScript = {1.5};
    bench.simulator.expireSessions();
    QStringList errors;
    bench.time.advance(Seconds(300));
    EXPECT_TRUE(bench.waitForTitle("1.50 kW"));
    EXPECT_EQ(bench.controller->lastErrorMessage(), std::nullopt);
    EXPECT_EQ(bench.requestsTo("GetToken"), 2);
}

TEST(Connection, AReadingOfAnotherStationReplacesTheStoredOne) {
    ControllerBench bench;
    bench.launchConnected();
    const int sizeRequests = bench.requestsTo("GetUserPowerStation");
    PowerReading reading;
    reading.kilowatts = 0.5;
    reading.stationID = QStringLiteral("another");
    reading.capturedAt = bench.time.now();
    bench.controller->handlePollResult(reading);
    EXPECT_EQ(bench.storedSettings().stationID, QStringLiteral("another"));
    EXPECT_EQ(bench.controller->todayOutputSamples().size(), 1U); // that station's own day
    EXPECT_TRUE(waitUntil([&] { return bench.requestsTo("GetUserPowerStation") > sizeRequests; }));
    EXPECT_EQ(bench.requestsTo("GetUserPowerStation"), sizeRequests + 1);
}

TEST(Connection, RefreshWithoutASessionSendsNothing) {
    ControllerBench bench;
    bench.launch();
    bench.item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(bench.waitForError("Not connected. Open Settings to connect."));
    EXPECT_EQ(bench.requestCount(), 0U);
}

TEST(Connection, AFailedPollKeepsTheLastValuesAndTheNextOneClearsTheLine) {
    ControllerBench bench;
    bench.launchConnected();
    Simulator::Fault fault;
    fault.status = 503;
    bench.simulator.behaviour().faults = {fault};
    bench.time.advance(Seconds(300));
    EXPECT_TRUE(bench.waitForError("SEMS service is temporarily unavailable. Try again shortly."));
    EXPECT_EQ(bench.title(), QStringLiteral("3.42 kW"));
    bench.simulator.behaviour().faults.clear();
    bench.item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(waitUntil([&] { return !bench.controller->lastErrorMessage(); }));
}

TEST(Connection, SignOutDuringAPollLetsNothingReappear) {
    ControllerBench bench;
    bench.launchConnected();
    Simulator::Fault late;
    late.kind = Simulator::FaultKind::delay;
    late.delay = std::chrono::milliseconds(100);
    bench.simulator.behaviour().faults = {late};
    const std::size_t before = bench.requestCount();
    bench.time.advance(Seconds(300));
    EXPECT_TRUE(bench.waitForRequests(before + 1));
    bench.item->choose(StatusMenuCommand::signOut);
    EXPECT_EQ(bench.title(), QStringLiteral("SEMS --"));
    EXPECT_FALSE(waitUntil([&] { return bench.title() != QStringLiteral("SEMS --"); }, 400));
    EXPECT_TRUE(bench.controller->todayOutputSamples().empty());
    EXPECT_EQ(bench.controller->lastErrorMessage(), std::nullopt);
    EXPECT_FALSE(bench.controller->isPolling());
    EXPECT_TRUE(bench.keychain.items.isEmpty());
    EXPECT_EQ(bench.controller->settings().account, QStringLiteral("demo@example.com"));
}

TEST(Connection, QuittingDuringARequestEndsCleanly) {
    ControllerBench bench;
    bench.storeAccount();
    Simulator::Fault silence;
    silence.kind = Simulator::FaultKind::silence;
    bench.simulator.behaviour().faults = {silence};
    bench.launch();
    EXPECT_TRUE(bench.waitForRequests(1));
    const std::weak_ptr<AppDelegate> controller = bench.controller;
    bench.controller->applicationWillTerminate();
    bench.http.reset();
    bench.controller.reset();
    settle();
    EXPECT_TRUE(controller.expired());
}

TEST(Connection, ConnectsByItselfOnceThereIsANetwork) {
    ControllerBench bench;
    bench.storeAccount();
    Simulator::Fault refused;
    refused.kind = Simulator::FaultKind::close;
    bench.simulator.behaviour().faults = {refused};
    bench.launch();
    EXPECT_TRUE(waitUntil([&] { return bench.controller->lastErrorMessage().has_value(); }));
    bench.simulator.behaviour().faults.clear();
    bench.systemEvents.networkReachable();
    EXPECT_TRUE(bench.waitForTitle("3.42 kW"));
    EXPECT_EQ(bench.controller->lastErrorMessage(), std::nullopt);
    EXPECT_EQ(bench.controller->preferencesCoordinator().window(), nullptr);
}

TEST(Connection, NoPasswordReachesTheLog) {
    static QString logged;
    logged.clear();
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& message) { logged += message + QLatin1Char('\n'); });
    QLoggingCategory::setFilterRules(QStringLiteral("Varnel.*=true"));
    {
        ControllerBench bench;
        bench.launchConnected();
        bench.simulator.expireSessions();
        bench.simulator.behaviour().password = QStringLiteral("changed");
        bench.time.advance(Seconds(300));
        EXPECT_TRUE(bench.waitForError("Session expired or credentials changed. Open Settings and reconnect."));
    }
    QLoggingCategory::setFilterRules(QString());
    qInstallMessageHandler(previous);
    EXPECT_TRUE(logged.contains(QLatin1String("Endpoint attempt failed for"))) << qPrintable(logged);
    EXPECT_FALSE(logged.contains(QLatin1String("sunshine"))) << qPrintable(logged);
}

} // namespace
} // namespace Varnel
