#include <VarnelPreferences/PreferencesForm.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "RecordingOwner.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

class PreferencesFormTest : public testing::Test {
protected:
    static PreferencesDraft openedWith() {
        PreferencesDraft draft;
        draft.account = QStringLiteral("old@example.com");
        draft.password = QStringLiteral("old secret");
        draft.pollIntervalSeconds = 330;
        return draft;
    }

    Testing::HandTurnedTime time;
    Testing::RecordingOwner owner;
    PreferencesForm form{openedWith(), owner.handlers(), time};
    const AccountFields newAccount{QStringLiteral("https://example.com/api/"), QStringLiteral("new@example.com"),
                                   QStringLiteral("new secret"), QStringLiteral("7")};
};

TEST_F(PreferencesFormTest, ARowOfIntervalChangesIsOneChangeAfterItsPause) {
    for (const int minutes : {6, 7, 8}) {
        form.editPollInterval(minutes);
        time.advance(Seconds(0.4));
    }
    EXPECT_TRUE(owner.autoSaved.empty());
    time.advance(Seconds(0.2));
    ASSERT_EQ(owner.autoSaved.size(), 1U);
    EXPECT_EQ(owner.autoSaved.front().pollIntervalSeconds, 480);
    form.handOn();
    time.advance(Seconds(10));
    EXPECT_EQ(owner.autoSaved.size(), 1U);
}

TEST_F(PreferencesFormTest, APendingIntervalGoesWithTheNextEditOrSaveAndNotASecondTime) {
    form.editPollInterval(10);
    form.edit(&PreferencesDraft::showDockIcon, true);
    ASSERT_EQ(owner.autoSaved.size(), 1U);
    EXPECT_EQ(owner.autoSaved.front().pollIntervalSeconds, 600);
    form.editPollInterval(20);
    form.save(newAccount);
    ASSERT_EQ(owner.saved.size(), 1U);
    EXPECT_EQ(owner.saved.front().pollIntervalSeconds, 1200);
    time.advance(Seconds(10));
    EXPECT_EQ(owner.autoSaved.size(), 1U);
}

TEST_F(PreferencesFormTest, NothingIsHandedOnAfterDetaching) {
    form.editPollInterval(10);
    form.detach();
    form.handOn();
    form.edit(&PreferencesDraft::showDockIcon, true);
    form.save(newAccount);
    form.signOut();
    form.reportClosed();
    time.advance(Seconds(10));
    EXPECT_TRUE(owner.autoSaved.empty() && owner.saved.empty());
    EXPECT_EQ(owner.signOuts + owner.closings, 0);
}

TEST_F(PreferencesFormTest, ASaveIsOneAtATimeAndItsOutcomeIsTheConnection) {
    const ConnectionState noRoute{.isConnected = true, .hasError = true, .errorMessage = QStringLiteral("No route.")};
    const ConnectionState noPassword{
        .hasError = true, .errorMessage = QStringLiteral("A password is needed."), .wasTried = false};
    const struct {
        const char* name;
        bool outcome;
        std::optional<ConnectionState> reported; ///< by the owner, while the save goes on
        ConnectionState::Kind kind;
        const char* text;
    } rows[] = {
        {"connects", true, {}, ConnectionState::Kind::connected, "Connected"},
        {"fails without a reason", false, {}, ConnectionState::Kind::error, "Connection error"},
        {"fails with a reason", false, noRoute, ConnectionState::Kind::error, "Connection error: No route."},
        {"has nothing to try", false, noPassword, ConnectionState::Kind::error, "A password is needed."},
        {"connects, first poll fails", true, noRoute, ConnectionState::Kind::error, "Connection error: No route."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        owner.saved.clear();
        form.updateConnection({.isConnected = true, .hasError = true, .errorMessage = QStringLiteral("An old error.")});
        form.save(newAccount);
        form.save(newAccount);
        ASSERT_EQ(owner.saved.size(), 1U);
        EXPECT_EQ(owner.saved.front().account, newAccount.account);
        if (row.reported) {
            form.updateConnection(*row.reported);
        }
        Testing::settle();
        EXPECT_EQ(connectionKind(form.connection()), ConnectionState::Kind::connecting);
        EXPECT_FALSE(form.canSignOut());
        owner.endSave(row.outcome);
        Testing::settle();
        EXPECT_EQ(connectionKind(form.connection()), row.kind);
        EXPECT_EQ(connectionText(form.connection()), QString::fromLatin1(row.text));
        EXPECT_EQ(form.connection().isConnected, row.outcome);
    }
}

TEST_F(PreferencesFormTest, ACancelledSaveEndsAtOnceAndItsOutcomeDoesNotCount) {
    form.cancelSignIn();
    EXPECT_EQ(owner.cancellations, 0) << "nothing goes on";
    form.save(newAccount);
    form.cancelSignIn();
    EXPECT_EQ(owner.cancellations, 1);
    EXPECT_EQ(connectionKind(form.connection()), ConnectionState::Kind::notConnected);
    owner.endSave(false);
    Testing::settle();
    EXPECT_EQ(connectionKind(form.connection()), ConnectionState::Kind::notConnected) << "that is no error";
    form.save(newAccount);
    EXPECT_EQ(owner.saved.size(), 2U);
}

TEST_F(PreferencesFormTest, ASignInOfTheProgramIsToldAndLetsTheUserSaveAllTheSame) {
    form.updateConnection({.connecting = ConnectionState::Connecting::inBackground});
    EXPECT_EQ(connectionKind(form.connection()), ConnectionState::Kind::connecting);
    EXPECT_FALSE(form.isUserWaiting());
    form.cancelSignIn();
    EXPECT_EQ(owner.cancellations, 1);
    form.updateConnection({.connecting = ConnectionState::Connecting::forUser});
    form.save(newAccount);
    EXPECT_TRUE(owner.saved.empty()) << "the save of a window that was closed meanwhile goes on";
    form.updateConnection({.connecting = ConnectionState::Connecting::inBackground});
    form.save(newAccount);
    EXPECT_EQ(owner.saved.size(), 1U);
}

} // namespace
} // namespace Varnel
