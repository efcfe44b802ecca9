#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QMenuBar>
#include <QSpinBox>
#include <QTabWidget>

namespace Varnel {
namespace {

using Simulator::FaultKind;
using Testing::await;
using Testing::settle;
using Testing::waitUntil;

class PreferencesTest : public testing::Test, protected Testing::ControllerBench {
protected:
    QAbstractButton* buttonNamed(const QString& text) {
        QWidget* window = controller->preferencesCoordinator().window()->window();
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }
};

TEST_F(PreferencesTest, AnExplicitSaveConnectsAndStoresTheTrimmedPassword) {
    launch();
    settle();
    PreferencesDraft draft = currentDraft();
    draft.account = QStringLiteral(" Demo@example.com \n");
    draft.password = QStringLiteral(" sunshine ");
    simulator.behaviour().account = QStringLiteral("Demo@example.com");
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    EXPECT_TRUE(waitForTitle("3.42 kW"));
    EXPECT_EQ(storedSettings().account, QStringLiteral("Demo@example.com"));
    ASSERT_EQ(keychain.items.size(), 1);
    EXPECT_EQ(keychain.items.firstKey().second, QStringLiteral("password.demo@example.com"));
    EXPECT_EQ(keychain.items.first(), QByteArray("sunshine"));
}

TEST_F(PreferencesTest, EmptyFieldsTakeWhatIsStoredOrTheDefaultOrSayWhatIsMissing) {
    launchConnected();
    EXPECT_TRUE(await(controller->applyPreferences(currentDraft()))); // its password is empty
    PreferencesDraft draft = currentDraft();
    draft.account = QStringLiteral("  ");
    draft.baseURL = QStringLiteral("  ");
    EXPECT_FALSE(await(controller->applyPreferences(draft)));
    EXPECT_EQ(controller->values().errorMessage, QStringLiteral("Set your SEMS account to connect."));
    EXPECT_EQ(title(), QStringLiteral("SEMS --"));
    EXPECT_EQ(storedSettings().baseURL, AppSettings::defaults().baseURL);
    EXPECT_EQ(keychain.items.size(), 1) << "signed out, but the password stays";

    keychain.items.clear();
    const std::size_t before = requestCount();
    draft = currentDraft();
    draft.account = QStringLiteral("demo@example.com");
    EXPECT_FALSE(await(controller->applyPreferences(draft)));
    EXPECT_EQ(controller->values().errorMessage, QStringLiteral("Password is required for sign in."));
    EXPECT_EQ(requestCount(), before);
}

TEST_F(PreferencesTest, AnotherAccountShowsNothingOfTheFormerOne) {
    launchConnected();
    PreferencesDraft draft = currentDraft();
    draft.account = QStringLiteral("somebody@example.com");
    draft.password = QStringLiteral("wrong");
    QCoro::Task<bool> save = controller->applyPreferences(draft);
    EXPECT_EQ(title(), QStringLiteral("SEMS --")); // at once, not when the sign-in has ended
    EXPECT_FALSE(await(std::move(save)));
    EXPECT_TRUE(waitForError("Sign-in failed. Check email/password in Profile and reconnect."));
    EXPECT_FALSE(controller->isPolling() || controller->semsSession().has_value());
    EXPECT_TRUE(controller->todayOutput().samples().empty());
    EXPECT_FALSE(QFile::exists(dataFolder.filePath(QStringLiteral("com.varnel.menubar/output-history.json"))));
}

TEST_F(PreferencesTest, AnAccountThatIsTypedAgainAfterItsSettingsWereLostFindsItsHistory) {
    launchConnected();
    ASSERT_EQ(controller->todayOutput().samples().size(), 1U);
    const AppSettings lost = storedSettings();
    AppSettingsStore(userDefaults).save(AppSettings::defaults());
    time.advance(Seconds(60));
    launch();
    PreferencesDraft draft = currentDraft();
    draft.baseURL = lost.baseURL;
    draft.account = lost.account;
    draft.password = QStringLiteral("sunshine");
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    EXPECT_TRUE(waitUntil([&] { return controller->todayOutput().samples().size() >= 2; }));
}

TEST_F(PreferencesTest, APollInFlightDoesNotBringTheFormerStationBack) {
    launchConnected();
    const std::size_t before = requestCount();
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForRequests(before + 1));
    failRequests(Simulator::FaultKind::silence); // what is asked from now on
    PreferencesDraft draft = currentDraft();
    draft.stationID = QStringLiteral("another");
    QCoro::Task<bool> save = controller->applyPreferences(draft);
    EXPECT_EQ(title(), QStringLiteral("--"));
    EXPECT_FALSE(waitUntil([&] { return controller->settings().stationID != QLatin1String("another"); }, 300));
    EXPECT_TRUE(controller->isPolling());
}

TEST_F(PreferencesTest, QuittingHandsOnAPendingEditAndStillEndsPolling) {
    launchConnected();
    controller->showPreferencesWindow(PreferencesInitialTab::general);
    controller->preferencesCoordinator().window()->window()->findChild<QSpinBox*>()->setValue(10);
    controller->applicationWillTerminate();
    EXPECT_EQ(storedSettings().pollIntervalSeconds, 600);
    EXPECT_FALSE(controller->isPolling());
}

TEST_F(PreferencesTest, OfTwoSavesInARowTheLaterOneHolds) {
    launch();
    PreferencesDraft first = currentDraft();
    first.account = QStringLiteral("demo@example.com");
    first.password = QStringLiteral("mistyped");
    PreferencesDraft second = first;
    second.password = QStringLiteral("sunshine");
    QCoro::Task<bool> firstSave = controller->applyPreferences(first);
    EXPECT_TRUE(await(controller->applyPreferences(second)));
    await(std::move(firstSave));
    EXPECT_TRUE(waitForTitle("3.42 kW"));
    EXPECT_EQ(keychain.items.first(), QByteArray("sunshine"));
    EXPECT_EQ(controller->values().errorMessage, std::nullopt);
}

TEST_F(PreferencesTest, TheIntervalRestartsPollingAndTheChartModeDoesNot) {
    launchConnected();
    const std::size_t before = requestCount();
    PreferencesDraft draft = currentDraft();
    draft.chartScaleMode = ChartScaleMode::fixed;
    controller->applyAutoSavedPreferences(draft);
    time.advance(Seconds(1));
    EXPECT_EQ(requestCount(), before);
    EXPECT_EQ(controller->presentation().outputChartYAxisMaxKW, controller->values().systemSizeKW);
    draft.pollIntervalSeconds = 600;
    controller->applyAutoSavedPreferences(draft);
    time.advance(Seconds(0.1));
    EXPECT_TRUE(waitForRequests(before + 1));
    EXPECT_EQ(storedSettings().pollIntervalSeconds, 600);
}

TEST_F(PreferencesTest, ThePermissionIsAskedForWithTheFirstSwitchOnly) {
    notificationCenter->status = NotificationAuthorizationStatus::notDetermined;
    launch();
    PreferencesDraft draft = currentDraft();
    draft.notifyOnProductionStart = true;
    controller->applyAutoSavedPreferences(draft);
    settle();
    EXPECT_EQ(notificationCenter->asked.size(), 1U);
    draft.notifyOnProductionEnd = true;
    controller->applyAutoSavedPreferences(draft);
    settle();
    EXPECT_EQ(notificationCenter->asked.size(), 1U);
}

TEST_F(PreferencesTest, ASignInIsToldToEachWindowAndEndsWhenItIsCancelled) {
    storeAccount();
    for (const bool isStart : {true, false}) {
        SCOPED_TRACE(isStart ? "the start" : "a save");
        failRequests(FaultKind::status, 503);
        simulator.behaviour().faults.front().delay = std::chrono::milliseconds(100);
        std::size_t sent = requestCount();
        std::optional<QCoro::Task<bool>> save;
        if (isStart) {
            launch();
        } else {
            save = controller->applyPreferences(currentDraft());
        }
        ASSERT_TRUE(waitUntil([&] { return requestCount() > sent; }));
        controller->showPreferencesWindow(PreferencesInitialTab::account); // as one that was closed meanwhile
        QAbstractButton* button = buttonNamed(QStringLiteral("&Cancel"));
        ASSERT_TRUE(button);
        sent = requestCount();
        button->click();
        EXPECT_EQ(button->text(), QStringLiteral("Save and &Connect"));
        EXPECT_EQ(controller->values().errorMessage, std::nullopt);
        if (save) {
            EXPECT_FALSE(await(std::move(*save)));
        }
        systemEvents.networkReachable();
        time.advance(Seconds(3600));
        waitUntil([&] { return requestCount() > sent; }, 300); // the request that was in flight ends meanwhile
        EXPECT_EQ(requestCount(), sent) << "the password went to another address, or there once more";
        EXPECT_EQ(controller->values().errorMessage, std::nullopt);
    }
}

TEST_F(PreferencesTest, ASaveThatIsCancelledBeforeItsSignInLeavesTheConnectionAtWork) {
    launchConnected();
    PreferencesDraft draft = currentDraft();
    draft.notifyOnProductionStart = true; // the permission is asked for first
    auto save = controller->applyPreferences(draft);
    const std::size_t sent = requestCount();
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    QAbstractButton* button = buttonNamed(QStringLiteral("&Cancel"));
    ASSERT_TRUE(button);
    button->click();
    EXPECT_TRUE(await(std::move(save)));
    EXPECT_EQ(requestCount(), sent);
    simulator.behaviour().powerScript = {1.5};
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForTitle("1.50 kW"));
}

TEST_F(PreferencesTest, ACancelledSignInHidesNoFailure) {
    launchConnected();
    simulator.behaviour().faults = {Simulator::Fault()};
    controller->refresh();
    const QString failure = QStringLiteral("SEMS service is temporarily unavailable. Try again shortly.");
    ASSERT_TRUE(waitUntil([&] { return controller->presentation().errorLine == failure; }));
    PreferencesDraft draft = currentDraft();
    draft.notifyOnProductionStart = true; // the permission is asked for first
    auto save = controller->applyPreferences(draft);
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    QAbstractButton* button = buttonNamed(QStringLiteral("&Cancel"));
    ASSERT_TRUE(button);
    button->click();
    EXPECT_TRUE(await(std::move(save)));
    EXPECT_TRUE(waitUntil([&] { return controller->presentation().errorLine == failure; }));
}

TEST_F(PreferencesTest, ThePaneAsksForTheFieldThatIsWantedAndTellsWhatWasAnswered) {
    storeAccount();
    launch();
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    const auto lineOf = [this](const QString& text) {
        for (const auto* label : controller->preferencesCoordinator().window()->window()->findChildren<QLabel*>()) {
            if (label->text() == text) {
                return label;
            }
        }
        return static_cast<const QLabel*>(nullptr);
    };
    PreferencesDraft draft = currentDraft();
    draft.account.clear();
    await(controller->applyPreferences(draft));
    EXPECT_TRUE(lineOf(QStringLiteral("Set your SEMS account to connect."))) << "no connection was tried";
    draft.account = QStringLiteral("demo@example.com");
    draft.password = QStringLiteral("wrong");
    await(controller->applyPreferences(draft));
    const QLabel* line =
        lineOf(QStringLiteral("Connection error: Sign-in failed. Check email/password in Profile and reconnect."));
    ASSERT_TRUE(line);
    EXPECT_TRUE(line->accessibleDescription().contains(simulator.baseURL().host())) << "what each address answered";
}

TEST_F(PreferencesTest, AFailedLaunchAtLoginGoesBackToWhatTheSystemReports) {
    loginItem.isRegistered = true;
    launch();
    EXPECT_TRUE(loginItem.isRegistered) << "the start takes no entry away";
    loginItem.isRegistered = false;
    loginItem.isBroken = true;
    PreferencesDraft draft = currentDraft();
    draft.launchAtLogin = true;
    controller->applyAutoSavedPreferences(draft);
    EXPECT_FALSE(storedSettings().launchAtLogin);
    loginItem.isBroken = false;
    controller->applyAutoSavedPreferences(draft);
    EXPECT_TRUE(storedSettings().launchAtLogin);
    EXPECT_TRUE(loginItem.isRegistered);
}

TEST_F(PreferencesTest, TheDockIconFollowsItsSwitchUnlessTheDesktopRefuses) {
    launch();
    PreferencesDraft draft = currentDraft();
    draft.showDockIcon = true;
    controller->applyAutoSavedPreferences(draft);
    EXPECT_EQ(shell.policy, ActivationPolicy::regular);
    shell.isRefusing = true;
    draft.showDockIcon = false;
    controller->applyAutoSavedPreferences(draft);
    EXPECT_EQ(shell.policy, ActivationPolicy::regular);
    EXPECT_FALSE(storedSettings().showDockIcon);
}

TEST_F(PreferencesTest, TheMenusOpenTheWindowOnTheirPaneAndQuit) {
    storeAccount();
    launch();
    const auto pane = [this] {
        return controller->preferencesCoordinator().window()->window()->findChild<QTabWidget*>()->currentIndex();
    };
    item->choose(StatusMenuCommand::signIn);
    EXPECT_EQ(pane(), 1);
    item->choose(StatusMenuCommand::preferences);
    EXPECT_EQ(pane(), 0);
    QWidget* window = controller->preferencesCoordinator().window()->window();
    window->hide(); // with the whole application
    controller->bringPreferencesToFront();
    EXPECT_TRUE(window->isVisible()) << "what was typed is gone";
    window->close();
    EXPECT_EQ(controller->preferencesCoordinator().window(), nullptr);
    item->choose(StatusMenuCommand::preferences);
    const auto* menu = controller->preferencesCoordinator().window()->window()->findChild<QMenuBar*>();
    for (QAction* action : menu->actions().front()->menu()->actions()) {
        if (action->text() == QLatin1String("Settings") || action->text() == QLatin1String("Quit Varnel")) {
            action->trigger();
        }
    }
    EXPECT_EQ(pane(), 0);
    EXPECT_EQ(shell.terminations, 1);
}

} // namespace
} // namespace Varnel
