#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace Varnel {
namespace {

using Testing::await;
using Testing::settle;
using Testing::waitUntil;

/// The password between the keyring, the pane and the person.
class PasswordTest : public testing::Test, protected Testing::ControllerBench {
protected:
    /// Whether the open preferences say this anywhere.
    bool isSaid(const QString& piece) const {
        const PreferencesWindowController* window = controller->preferencesCoordinator().window();
        const auto labels = window ? window->window()->findChildren<QLabel*>() : QList<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return !label->isHidden() && label->text().contains(piece); });
    }
};

TEST_F(PasswordTest, ADisconnectIsFinalWhateverTheKeyringDoes) {
    launchConnected();
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    keychain.status = keychainInteractionNotAllowed; // and nobody unlocks it
    item->choose(StatusMenuCommand::signOut);
    EXPECT_TRUE(waitUntil([&] { return isSaid(QStringLiteral("could not be deleted")); }));
    EXPECT_TRUE(waitUntil([&] { return keychain.calls.count(QStringLiteral("deleteMatching")) == 2; }))
        << "not tried again after the question to unlock";
    keychain.status = keychainSuccess; // the password can be read again
    const std::size_t before = requestCount();
    systemEvents.networkReachable();
    settle();
    EXPECT_EQ(requestCount(), before) << "signed in by itself";
    launch();
    EXPECT_TRUE(waitUntil([&] { return controller->preferencesCoordinator().window() != nullptr; }));
    settle();
    EXPECT_EQ(requestCount(), before) << "signed in by itself";
    EXPECT_TRUE(keychain.items.isEmpty()) << "what could not be deleted then goes at the next start";

    PreferencesDraft draft = currentDraft();
    draft.password = QStringLiteral("sunshine");
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    EXPECT_FALSE(isSaid(QStringLiteral("could not be deleted")));
    launch();
    EXPECT_TRUE(waitForTitle("3.42 kW")) << "the user has connected again";
}

TEST_F(PasswordTest, ADisconnectUnlocksBeforeItGivesUp) {
    launchConnected();
    keychain.isLocked = true; // until somebody is asked
    item->choose(StatusMenuCommand::signOut);
    EXPECT_TRUE(waitUntil([&] { return keychain.items.isEmpty(); }));
}

TEST_F(PasswordTest, WhatTheFormerAccountLeftIsSaidAlsoAfterAnotherHasConnected) {
    launchConnected();
    keychain.isLocked = true;
    keychain.deleteStatus = keychainInteractionNotAllowed;
    item->choose(StatusMenuCommand::signOut);
    PreferencesDraft draft = currentDraft();
    draft.account = QStringLiteral("somebody@example.com");
    draft.password = QStringLiteral("sunshine");
    simulator.behaviour().account = draft.account;
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    EXPECT_TRUE(isSaid(QStringLiteral("could not be deleted")));
}

TEST_F(PasswordTest, AKeyringThatIsUnlockedLaterIsFoundWithoutAnybodysHelp) {
    storeAccount();
    keychain.status = keychainInteractionNotAllowed;
    launch();
    EXPECT_TRUE(waitUntil([this] { return controller->preferencesCoordinator().window() != nullptr; }));
    for (int tries = 1; tries <= 2; ++tries) {
        time.advance(Seconds(300));
        settle();
        EXPECT_EQ(requestCount(), 0U);
    }
    keychain.status = keychainSuccess;
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForTitle("3.42 kW"));
}

TEST_F(PasswordTest, ASlowKeyringSignsInWhenItAnswersAndNobodyIsAskedMeanwhile) {
    storeAccount();
    keychain.isSlow = true;
    launch();
    EXPECT_TRUE(waitUntil([this] { return !keychain.slowCalls.empty(); }));
    settle();
    EXPECT_EQ(requestCount(), 0U);
    EXPECT_TRUE(waitUntil([this] {
        keychain.answerSlowCalls();
        return title() == QStringLiteral("3.42 kW");
    }));
    EXPECT_EQ(controller->preferencesCoordinator().window(), nullptr);
    keychain.status = keychainServiceNotResponding;
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    const auto fields = controller->preferencesCoordinator().window()->window()->findChildren<QLineEdit*>();
    EXPECT_TRUE(std::any_of(fields.begin(), fields.end(), [](const QLineEdit* field) {
        return field->text() == QStringLiteral("sunshine");
    })) << "what is in use needs no keyring";
}

TEST(StoredPassword, IsNotKeptWhereItWasRemovedWhileAKeyringTookItsTime) {
    Testing::FakeKeychainServices keychain;
    const auto stored = std::make_shared<StoredPassword>(keychain);
    keychain.isSlow = true;
    auto saving = stored->save(QStringLiteral("me"), QStringLiteral("secret"));
    EXPECT_TRUE(stored->remove(QStringLiteral("ME ")));
    keychain.answerSlowCalls();
    await(std::move(saving));
    EXPECT_TRUE(keychain.items.isEmpty());
    auto other = stored->save(QStringLiteral("me"), QStringLiteral("secret"));
    keychain.answerSlowCalls();
    await(std::move(other));
    EXPECT_EQ(keychain.items.size(), 1);
}

TEST_F(PasswordTest, ASignOutEndsWhatTheStartHadBegun) {
    storeAccount();
    failRequests(Simulator::FaultKind::delay, std::nullopt, "*GetToken");
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(150);
    launch();
    EXPECT_TRUE(waitForRequests(1));
    controller->signOut(true);
    EXPECT_FALSE(waitUntil([&] { return controller->isPolling() || !keychain.items.isEmpty(); }, 400));
}

TEST_F(PasswordTest, APollOfAConnectionThatIsGoneSendsNoPassword) {
    Simulator::SEMSSimulator other(time);
    ASSERT_TRUE(other.listen(0));
    other.behaviour().families = Simulator::ServedFamilies::token;
    for (const bool isSignedOut : {true, false}) {
        simulator.behaviour().faults.clear();
        launchConnected();
        const int signIns = requestsTo("GetToken");
        failRequests(Simulator::FaultKind::status, 401, "*MonitorDetail*");
        simulator.behaviour().faults.front().delay = std::chrono::milliseconds(150);
        const std::size_t before = requestCount();
        time.advance(Seconds(300));
        EXPECT_TRUE(waitForRequests(before + 1));
        if (isSignedOut) {
            controller->signOut(false);
        } else {
            PreferencesDraft draft = currentDraft();
            draft.baseURL = other.baseURL().toString();
            EXPECT_TRUE(await(controller->applyPreferences(draft)));
        }
        EXPECT_FALSE(waitUntil([&] { return requestsTo("GetToken") != signIns; }, 500));
        AppSettingsStore(userDefaults).setSignedOut(false);
    }
}

TEST_F(PasswordTest, ARepetitionSendsWhatWasTypedWhateverTheKeyringHas) {
    launchConnected();
    simulator.behaviour().password = QStringLiteral("changed");
    failRequests(Simulator::FaultKind::status, 503);
    keychain.status = keychainInteractionNotAllowed; // the former password stays in it
    PreferencesDraft draft = currentDraft();
    draft.password = QStringLiteral("changed");
    EXPECT_FALSE(await(controller->applyPreferences(draft)));
    simulator.behaviour().faults.clear();
    time.advance(Seconds(600));
    EXPECT_TRUE(waitUntil([&] { return controller->isPolling(); }));
}

TEST_F(PasswordTest, APasswordThatCannotBeStoredIsSaid) {
    launch();
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    keychain.status = keychainInteractionNotAllowed;
    PreferencesDraft draft = currentDraft();
    draft.account = QStringLiteral("demo@example.com");
    draft.password = QStringLiteral("sunshine");
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    EXPECT_TRUE(isSaid(QStringLiteral("could not be stored")));
    controller->showPreferencesWindow(PreferencesInitialTab::account);
    EXPECT_TRUE(isSaid(QStringLiteral("could not be stored"))) << "gone with the window";
    keychain.status = keychainSuccess;
    EXPECT_TRUE(await(controller->applyPreferences(draft)));
    EXPECT_FALSE(isSaid(QStringLiteral("could not be stored")));
}

} // namespace
} // namespace Varnel
