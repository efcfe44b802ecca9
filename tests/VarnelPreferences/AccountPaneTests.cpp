#include "PreferencesWindowTest.h"

#include <QApplication>
#include <QLabel>

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
    button("Save and Connect")->click();
    owner.endSave(true);
    Testing::settle();
    QTest::keyClicks(field("Account"), QStringLiteral("3"));
    EXPECT_EQ(field("Station ID")->text(), QString()) << "the typed one was saved for the account before";
    QTest::keyClick(field("Account"), Qt::Key_Backspace);
    EXPECT_EQ(field("Station ID")->text(), QStringLiteral("17"));
}

TEST_F(AccountPaneTest, WhatCouldNotBeKeptOrRemovedIsSaidUntilTheNextTry) {
    open(PreferencesInitialTab::account);
    const auto notice = [this] {
        QString shown;
        for (const auto* label : tabs()->currentWidget()->findChildren<QLabel*>()) {
            shown += label->isVisible() && label->text().contains(QStringLiteral("could not be")) ? label->text()
                                                                                                  : QString();
        }
        return shown;
    };
    const int height = window()->height();
    controller->showAccountNotices(AccountNotice::passwordNotDeleted | AccountNotice::settingsNotStored);
    Testing::settle();
    EXPECT_EQ(notice(),
              QStringLiteral("The password could not be deleted. Start or unlock the keyring, then sign out again.\n"
                             "The settings could not be stored. Make room on the disk, then save again."));
    EXPECT_GT(window()->height(), height) << "the window makes room";
    EXPECT_TRUE(button("Sign Out")->isEnabled()) << "though nobody is connected";

    button("Sign Out")->click();
    EXPECT_EQ(owner.signOuts, 1);
    EXPECT_EQ(notice(), QString());
    EXPECT_FALSE(button("Sign Out")->isEnabled());
    controller->showAccountNotices(AccountNotice::passwordNotStored);
    EXPECT_EQ(notice(),
              QStringLiteral("The password could not be stored. Start or unlock the keyring, then save again."));
    EXPECT_FALSE(button("Sign Out")->isEnabled());
    button("Save and Connect")->click();
    EXPECT_EQ(notice(), QString());
    controller->showAccountNotices(AccountNotice::passwordNotStored); // by the save that goes on
    owner.endSave(true);
    Testing::settle();
    EXPECT_NE(notice(), QString());
    controller->showAccountNotices({});
    EXPECT_EQ(notice(), QString());
}

TEST_F(AccountPaneTest, AnAddressThatShowsThePasswordOnItsWayIsWarnedOf) {
    open(PreferencesInitialTab::account);
    button("Advanced")->click();
    const auto isWarned = [this] {
        const auto labels = tabs()->currentWidget()->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->isVisible() && label->text().contains(QStringLiteral("can be read on its way"));
        });
    };
    const std::pair<const char*, bool> rows[] = {
        {"http://solar.example/api/", true},
        {"https://solar.example/api/", false},
        {" HTTP://10.0.0.2", true},
        {"http://127.0.0.1:8080/api", false},
        {"http://localhost/", false},
        {"http://[::1]:1/", false},
        {"http://127.0.0.1.example/", true},
        {"http", false},
        {"", false},
    };
    for (const auto& [address, expected] : rows) {
        field("Base URL")->setText(QString::fromLatin1(address));
        EXPECT_EQ(isWarned(), expected) << address;
    }
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
    EXPECT_FALSE(field("Password")->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), button("Cancel"));
    button("Cancel")->click();
    EXPECT_EQ(owner.cancellations, 1);
    EXPECT_TRUE(field("Password")->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), field("Password"));
    EXPECT_TRUE(button("Save and Connect")->isEnabled());
}

TEST_F(AccountPaneTest, WhatTheUserNeedsNextHasTheFocusWhenASignInEnds) {
    const struct {
        const char* before;
        ConnectionState::WantedField wanted;
        const char* after;
    } rows[] = {
        {"Account", ConnectionState::WantedField::password, "Password"},
        {"Password", ConnectionState::WantedField::account, "Account"},
        {"Password", ConnectionState::WantedField::baseURL, "Base URL"},
        {"Station ID", ConnectionState::WantedField::none, "Station ID"},
    };
    open(PreferencesInitialTab::account);
    button("Advanced")->click();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.before);
        field(row.before)->setFocus();
        QTest::keyClick(field(row.before), Qt::Key_Return);
        controller->updateConnectionState(true, false); // a change while it goes on, as of a poll
        controller->updateConnectionState({.hasError = true, .wanted = row.wanted, .details = QStringLiteral("a\nb")});
        owner.endSave(false);
        Testing::settle();
        EXPECT_EQ(QApplication::focusWidget(), field(row.after));
    }
    const auto* line = named<QLabel>(QStringLiteral("Connection error"));
    EXPECT_EQ(line->accessibleDescription(), QStringLiteral("a\nb"));
    EXPECT_TRUE(line->toolTip().contains(QStringLiteral("a<br>b")));
}

TEST_F(AccountPaneTest, ASignInOfTheProgramLeavesTheUserTyping) {
    open(PreferencesInitialTab::account);
    QTest::keyClicks(field("Account"), QStringLiteral("m"));
    controller->updateConnectionState({.connecting = ConnectionState::Connecting::inBackground});
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("e"));
    EXPECT_EQ(field("Account")->text(), QStringLiteral("me"));
    button("Cancel")->click();
    EXPECT_EQ(owner.cancellations, 1);
    controller->updateConnectionState(false, false);
    EXPECT_TRUE(button("Save and Connect")->isVisible());
}

TEST_F(AccountPaneTest, ThePasswordIsHiddenUntilRevealedAndGoesWithTheSignOut) {
    PreferencesDraft draft;
    draft.password = QStringLiteral("secret");
    open(PreferencesInitialTab::account, draft);
    QLineEdit* password = field("Password");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    button("Show password")->click();
    EXPECT_EQ(password->echoMode(), QLineEdit::Normal);
    button("Hide password")->click();
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    button("Show password")->click();
    button("Sign Out")->click();
    EXPECT_EQ(owner.signOuts, 1);
    EXPECT_EQ(password->text(), QString());
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    EXPECT_FALSE(button("Sign Out")->isEnabled());
}

} // namespace
} // namespace Varnel
