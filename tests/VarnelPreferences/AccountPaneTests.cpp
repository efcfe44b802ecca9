#include "PreferencesWindowTest.h"

#include <QApplication>

namespace Varnel {
namespace {

using AccountPaneTest = Testing::PreferencesWindowTest;

TEST_F(AccountPaneTest, AnotherAccountHasAnotherStationUnlessOneIsTyped) {
    PreferencesDraft draft;
    draft.account = QStringLiteral("me");
    draft.stationID = QStringLiteral("1");
    open(PreferencesInitialTab::account, draft);
    button("Advanced")->click();
    QTest::keyClicks(field("Account"), QStringLiteral("2"));
    EXPECT_EQ(field("Station ID")->text(), QString());
    QTest::keyClick(field("Account"), Qt::Key_Backspace);
    EXPECT_EQ(field("Station ID")->text(), QStringLiteral("1"));
    QTest::keyClicks(field("Station ID"), QStringLiteral("7"));
    QTest::keyClicks(field("Account"), QStringLiteral("2"));
    EXPECT_EQ(field("Station ID")->text(), QStringLiteral("17"));
}

TEST_F(AccountPaneTest, ReturnInAFieldSavesAndTheFieldsRestWhileSigningIn) {
    PreferencesDraft draft;
    draft.account = QStringLiteral("old@example.com");
    open(PreferencesInitialTab::account, draft);
    field("Account")->setText(QStringLiteral("new@example.com"));
    QTest::keyClicks(field("Password"), QStringLiteral("secret"));
    button("Show dock icon")->click();
    EXPECT_EQ(owner.autoSaved.back().account, draft.account) << "an unsaved account stays in the window";
    EXPECT_EQ(owner.autoSaved.back().password, draft.password);
    QTest::keyClick(field("Password"), Qt::Key_Return);
    ASSERT_EQ(owner.saved.size(), 1U);
    EXPECT_EQ(owner.saved.front().account, QStringLiteral("new@example.com"));
    EXPECT_EQ(owner.saved.front().password, QStringLiteral("secret"));
    Testing::settle();
    EXPECT_FALSE(field("Password")->isEnabled() || button("Save and Connect")->isEnabled());
    owner.endSave(false);
    Testing::settle();
    EXPECT_TRUE(field("Password")->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), field("Password"));
}

TEST_F(AccountPaneTest, ThePasswordIsHiddenUntilRevealedAndGoesWithTheSignOut) {
    PreferencesDraft draft;
    draft.password = QStringLiteral("secret");
    open(PreferencesInitialTab::account, draft);
    QLineEdit* password = field("Password");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    button("Show password")->click();
    EXPECT_EQ(password->echoMode(), QLineEdit::Normal);
    button("Sign Out")->click();
    EXPECT_EQ(owner.signOuts, 1);
    EXPECT_EQ(password->text(), QString());
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    EXPECT_FALSE(button("Sign Out")->isEnabled());
}

} // namespace
} // namespace Varnel
