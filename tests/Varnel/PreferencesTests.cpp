#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QSpinBox>

namespace Varnel {
namespace {

using Testing::await;
using Testing::ControllerBench;
using Testing::settle;
using Testing::waitUntil;

TEST(Preferences, AnExplicitSaveConnectsAndStoresTheTrimmedPassword) {
    ControllerBench bench;
    bench.launch();
    settle();
    PreferencesDraft draft = bench.draft();
    draft.account = QStringLiteral(" Demo@example.com \n");
    draft.password = QStringLiteral(" sunshine ");
    bench.simulator.behaviour().account = QStringLiteral("Demo@example.com");
    EXPECT_TRUE(await(bench.controller->applyPreferences(draft)));
    EXPECT_TRUE(bench.waitForTitle("3.42 kW"));
    EXPECT_EQ(bench.storedSettings().account, QStringLiteral("Demo@example.com"));
    ASSERT_EQ(bench.keychain.items.size(), 1);
    EXPECT_EQ(bench.keychain.items.firstKey().second, QStringLiteral("password.demo@example.com"));
    EXPECT_EQ(bench.keychain.items.first(), QByteArray("sunshine"));
}

TEST(Preferences, AnEmptyAccountSignsOutButKeepsThePassword) {
    ControllerBench bench;
    bench.launchConnected();
    PreferencesDraft draft = bench.draft();
    draft.account = QStringLiteral("  ");
    EXPECT_FALSE(await(bench.controller->applyPreferences(draft)));
    EXPECT_EQ(bench.controller->lastErrorMessage(), QStringLiteral("Set your SEMS account to connect."));
    EXPECT_EQ(bench.title(), QStringLiteral("SEMS --"));
    EXPECT_EQ(bench.keychain.items.size(), 1);
}

TEST(Preferences, AnEmptyPasswordFieldTakesTheStoredOneOrSaysWhatIsMissing) {
    ControllerBench bench;
    bench.launchConnected();
    EXPECT_TRUE(await(bench.controller->applyPreferences(bench.draft())));
    bench.keychain.items.clear();
    const std::size_t before = bench.requestCount();
    bench.controller->signOut(true);
    EXPECT_FALSE(await(bench.controller->applyPreferences(bench.draft())));
    EXPECT_EQ(bench.controller->lastErrorMessage(), QStringLiteral("Password is required for sign in."));
    EXPECT_GE(before + 1, bench.requestCount()); // at most the poll that was due
}

TEST(Preferences, AnEmptyBaseURLBecomesTheDefault) {
    ControllerBench bench;
    bench.launch();
    PreferencesDraft draft;
    draft.baseURL = QStringLiteral("  ");
    await(bench.controller->applyPreferences(draft));
    EXPECT_EQ(bench.storedSettings().baseURL, AppSettings::defaults().baseURL);
}

TEST(Preferences, AnotherAccountShowsNothingOfTheFormerOne) {
    ControllerBench bench;
    bench.launchConnected();
    PreferencesDraft draft = bench.draft();
    draft.account = QStringLiteral("somebody@example.com");
    draft.password = QStringLiteral("wrong");
    QCoro::Task<bool> save = bench.controller->applyPreferences(draft);
    EXPECT_EQ(bench.title(), QStringLiteral("SEMS --")); // at once, not when the sign-in has ended
    EXPECT_FALSE(await(std::move(save)));
    EXPECT_TRUE(bench.controller->todayOutputSamples().empty());
    EXPECT_FALSE(QFile::exists(bench.dataFolder.filePath(QStringLiteral("com.varnel.menubar/output-history.json"))));
}

TEST(Preferences, APollInFlightDoesNotBringTheFormerStationBack) {
    ControllerBench bench;
    bench.launchConnected();
    const std::size_t before = bench.requestCount();
    bench.time.advance(Seconds(300));
    EXPECT_TRUE(bench.waitForRequests(before + 1));
    Simulator::Fault silence;
    silence.kind = Simulator::FaultKind::silence;
    bench.simulator.behaviour().faults = {silence}; // what is asked from now on
    PreferencesDraft draft = bench.draft();
    draft.stationID = QStringLiteral("another");
    QCoro::Task<bool> save = bench.controller->applyPreferences(draft);
    EXPECT_EQ(bench.title(), QStringLiteral("--"));
    EXPECT_FALSE(waitUntil([&] { return bench.controller->settings().stationID != QLatin1String("another"); }, 300));
    EXPECT_TRUE(bench.controller->isPolling());
}

TEST(Preferences, QuittingHandsOnAPendingEditAndStillEndsPolling) {
    ControllerBench bench;
    bench.launchConnected();
    bench.controller->showPreferencesWindow(PreferencesInitialTab::general);
    bench.controller->preferencesCoordinator().window()->window()->findChild<QSpinBox*>()->setValue(10);
    bench.controller->applicationWillTerminate();
    EXPECT_EQ(bench.storedSettings().pollIntervalSeconds, 600);
    EXPECT_FALSE(bench.controller->isPolling());
}

TEST(Preferences, OfTwoSavesInARowTheLaterOneHolds) {
    ControllerBench bench;
    bench.launch();
    PreferencesDraft first = bench.draft();
    first.account = QStringLiteral("demo@example.com");
    first.password = QStringLiteral("mistyped");
    PreferencesDraft second = first;
    second.password = QStringLiteral("sunshine");
    QCoro::Task<bool> firstSave = bench.controller->applyPreferences(first);
    EXPECT_TRUE(await(bench.controller->applyPreferences(second)));
    await(std::move(firstSave));
    EXPECT_TRUE(bench.waitForTitle("3.42 kW"));
    EXPECT_EQ(bench.keychain.items.first(), QByteArray("sunshine"));
    EXPECT_EQ(bench.controller->lastErrorMessage(), std::nullopt);
}

TEST(Preferences, TheIntervalRestartsPollingAndTheChartModeDoesNot) {
    ControllerBench bench;
    bench.launchConnected();
    const std::size_t before = bench.requestCount();
    PreferencesDraft draft = bench.draft();
    draft.chartScaleMode = ChartScaleMode::fixed;
    bench.controller->applyAutoSavedPreferences(draft);
    bench.time.advance(Seconds(1));
    EXPECT_EQ(bench.requestCount(), before);
    EXPECT_EQ(bench.controller->presentation().outputChartYAxisMaxKW, bench.controller->systemSizeKW());
    draft.pollIntervalSeconds = 600;
    bench.controller->applyAutoSavedPreferences(draft);
    bench.time.advance(Seconds(0.1));
    EXPECT_TRUE(bench.waitForRequests(before + 1));
    EXPECT_EQ(bench.storedSettings().pollIntervalSeconds, 600);
}

TEST(Preferences, ThePermissionIsAskedForWithTheFirstSwitchOnly) {
    ControllerBench bench;
    bench.notificationCenter->status = NotificationAuthorizationStatus::notDetermined;
    bench.launch();
    PreferencesDraft draft = bench.draft();
    draft.notifyOnProductionStart = true;
    bench.controller->applyAutoSavedPreferences(draft);
    settle();
    EXPECT_EQ(bench.notificationCenter->asked.size(), 1U);
    draft.notifyOnProductionEnd = true;
    bench.controller->applyAutoSavedPreferences(draft);
    settle();
    EXPECT_EQ(bench.notificationCenter->asked.size(), 1U);
}

TEST(Preferences, AFailedLaunchAtLoginGoesBackToWhatTheSystemReports) {
    ControllerBench bench;
    bench.launch();
    bench.loginItem.isBroken = true;
    PreferencesDraft draft = bench.draft();
    draft.launchAtLogin = true;
    bench.controller->applyAutoSavedPreferences(draft);
    EXPECT_FALSE(bench.storedSettings().launchAtLogin);
    bench.loginItem.isBroken = false;
    bench.controller->applyAutoSavedPreferences(draft);
    EXPECT_TRUE(bench.storedSettings().launchAtLogin);
    EXPECT_TRUE(bench.loginItem.isRegistered);
}

TEST(Preferences, TheDockIconFollowsItsSwitchUnlessTheDesktopRefuses) {
    ControllerBench bench;
    bench.launch();
    PreferencesDraft draft = bench.draft();
    draft.showDockIcon = true;
    bench.controller->applyAutoSavedPreferences(draft);
    EXPECT_EQ(bench.shell.policy, ActivationPolicy::regular);
    bench.shell.isRefusing = true;
    draft.showDockIcon = false;
    bench.controller->applyAutoSavedPreferences(draft);
    EXPECT_EQ(bench.shell.policy, ActivationPolicy::regular);
    EXPECT_FALSE(bench.storedSettings().showDockIcon);
}

TEST(Preferences, TheApplicationMenuOpensTheWindowAndQuits) {
    ControllerBench bench;
    bench.storeAccount();
    bench.launch();
    for (QAction* action : bench.controller->applicationMenu().actions()) {
        if (action->text() == QLatin1String("Settings") || action->text() == QLatin1String("Quit Varnel")) {
            action->trigger();
        }
    }
    EXPECT_NE(bench.controller->preferencesCoordinator().window(), nullptr);
    EXPECT_EQ(bench.shell.terminations, 1);
}

} // namespace
} // namespace Varnel
