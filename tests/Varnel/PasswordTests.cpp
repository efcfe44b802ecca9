#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>

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
    EXPECT_TRUE(keychain.calls.contains(QLatin1String("unlock")));
    const std::size_t before = requestCount();
    systemEvents.networkReachable();
    settle();
    keychain.status = keychainSuccess;
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
