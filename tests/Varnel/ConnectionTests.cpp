#include "../Support/Files.h"
#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QLoggingCategory>

namespace Varnel {
namespace {

using Simulator::FaultKind;
using Testing::settle;
using Testing::waitUntil;

class ConnectionTest : public testing::Test, protected Testing::ControllerBench {};

TEST_F(ConnectionTest, AFirstLaunchSendsNothingAndAsksForTheAccount) {
    launch();
    settle();
    EXPECT_EQ(title(), QStringLiteral("SEMS --"));
    EXPECT_NE(controller->preferencesCoordinator().window(), nullptr);
    EXPECT_EQ(controller->values().errorMessage, std::nullopt);
    EXPECT_FALSE(QFile::exists(dataFolder.filePath(QStringLiteral("defaults.ini")))) << "nothing is saved";
    item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(waitForError("Not connected. Open Settings to connect."));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(ConnectionTest, AStoredAccountConnectsPollsAndKeepsItsStation) {
    launchConnected();
    EXPECT_EQ(controller->preferencesCoordinator().window(), nullptr);
    EXPECT_EQ(item->toolTip, QStringLiteral("Current Output: 3.42 kW"));
    EXPECT_EQ(item->menu, statusMenu(controller->presentation()));
    const QString station = simulator.behaviour().stations.front().id;
    EXPECT_EQ(storedSettings().stationID, station);
    EXPECT_EQ(controller->values().systemSizeKW, simulator.behaviour().stations.front().capacityKW);
    EXPECT_EQ(controller->todayOutput().samples().size(), 1U);
    EXPECT_TRUE(controller->presentation().showOutputChart);
    EXPECT_EQ(simulator.log().maximumInFlight(), 1);
    EXPECT_FALSE(keychain.calls.contains(QLatin1String("deleteMatching"))) << "the password did not change";
}

TEST_F(ConnectionTest, AStoredIntervalOutOfRangeIsSavedClamped) {
    for (const auto& [stored, clamped] : {std::pair(30, 300), std::pair(7200, 3600)}) {
        userDefaults.setData(QStringLiteral("varnel.settings.v1"),
                             "{\"pollIntervalSeconds\":" + QByteArray::number(stored) + '}');
        launch();
        EXPECT_EQ(storedSettings().pollIntervalSeconds, clamped);
    }
}

TEST_F(ConnectionTest, WhatCannotBeTriedIsSaidWithoutARequest) {
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
        AppSettings settings;
        settings.account = QString::fromLatin1(row.account);
        settings.baseURL = QString::fromLatin1(row.baseURL);
        AppSettingsStore(userDefaults).save(settings);
        launch();
        Testing::await(controller->authenticateAndStartPolling(QStringLiteral("secret")));
        EXPECT_EQ(controller->values().errorMessage, QString::fromLatin1(row.line));
        EXPECT_EQ(requestCount(), 0U);
    }
}

TEST_F(ConnectionTest, AReadingOfAnotherStationReplacesTheStoredOne) {
    launchConnected();
    const int sizeRequests = requestsTo("GetUserPowerStation");
    PowerReading reading;
    reading.kilowatts = 0.5;
    reading.stationID = QStringLiteral("another");
    reading.capturedAt = time.now();
    controller->handlePollResult(reading);
    EXPECT_EQ(storedSettings().stationID, QStringLiteral("another"));
    EXPECT_EQ(controller->todayOutput().samples().size(), 1U); // that station's own day
    EXPECT_TRUE(waitUntil([&] { return requestsTo("GetUserPowerStation") > sizeRequests; }));
    EXPECT_EQ(requestsTo("GetUserPowerStation"), sizeRequests + 1);
}

TEST_F(ConnectionTest, SignOutDuringAPollLetsNothingReappear) {
    launchConnected();
    failRequests(FaultKind::delay);
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(100);
    const std::size_t before = requestCount();
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForRequests(before + 1));
    item->choose(StatusMenuCommand::signOut);
    EXPECT_EQ(title(), QStringLiteral("SEMS --"));
    EXPECT_FALSE(waitUntil([&] { return title() != QStringLiteral("SEMS --"); }, 400));
    EXPECT_TRUE(controller->todayOutput().samples().empty());
    EXPECT_EQ(controller->values().errorMessage, std::nullopt);
    EXPECT_FALSE(controller->isPolling());
    EXPECT_TRUE(keychain.items.isEmpty());
    EXPECT_EQ(controller->settings().account, QStringLiteral("demo@example.com"));
}

TEST_F(ConnectionTest, QuittingDuringARequestEndsCleanly) {
    storeAccount();
    failRequests(FaultKind::silence);
    launch();
    EXPECT_TRUE(waitForRequests(1));
    const std::weak_ptr<AppDelegate> observed = controller;
    controller->applicationWillTerminate();
    http.reset();
    controller.reset();
    settle();
    EXPECT_TRUE(observed.expired());
}

TEST_F(ConnectionTest, ConnectsByItselfOnceThereIsANetwork) {
    storeAccount();
    failRequests(FaultKind::close);
    launch();
    EXPECT_TRUE(waitUntil([&] { return controller->values().errorMessage.has_value(); }));
    simulator.behaviour().faults.clear();
    systemEvents.networkReachable();
    EXPECT_TRUE(waitForTitle("3.42 kW"));
    EXPECT_EQ(controller->values().errorMessage, std::nullopt);
    EXPECT_EQ(controller->preferencesCoordinator().window(), nullptr);
}

TEST_F(ConnectionTest, ALateDiscoveryLeavesTheStationThatWasSavedMeanwhile) {
    storeAccount();
    failRequests(FaultKind::delay, std::nullopt, "*GetUserPowerStation");
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(200);
    launch();
    EXPECT_TRUE(waitUntil([&] { return requestsTo("GetUserPowerStation") == 1; }));
    simulator.behaviour().faults.front().path = QStringLiteral("*GetToken");
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(400);
    PreferencesDraft edited = currentDraft();
    edited.stationID = simulator.behaviour().stations.back().id;
    EXPECT_TRUE(Testing::await(controller->applyPreferences(edited)));
    EXPECT_EQ(storedSettings().stationID, edited.stationID);
}

TEST_F(ConnectionTest, NoPasswordReachesTheLog) {
    const Testing::RecordedLog log;
    QLoggingCategory::setFilterRules(QStringLiteral("Varnel.*=true"));
    launchConnected();
    simulator.expireSessions();
    simulator.behaviour().password = QStringLiteral("changed");
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForError("Session expired or credentials changed. Open Settings and reconnect."));
    QLoggingCategory::setFilterRules(QString());
    const QString logged = log.lines.join(QLatin1Char('\n'));
    EXPECT_TRUE(logged.contains(QLatin1String("Endpoint attempt failed for"))) << qPrintable(logged);
    EXPECT_FALSE(logged.contains(QLatin1String("sunshine"))) << qPrintable(logged);
}

} // namespace
} // namespace Varnel
