#include <VarnelPreferences/PreferencesWindowController.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "RecordingOwner.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

namespace Varnel {
namespace {

class PreferencesWindowTest : public testing::Test {
protected:
    void open(PreferencesInitialTab tab, const PreferencesDraft& draft = {}) {
        controller = std::make_unique<PreferencesWindowController>(draft, false, false, tab, owner.handlers(), time);
        controller->showWindowAndFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(controller->window()));
        Testing::settle();
    }

    ~PreferencesWindowTest() override {
        controller.reset();
        Testing::settle();
    }

    QWidget* window() const { return controller->window(); }
    QTabWidget* tabs() const { return window()->findChild<QTabWidget*>(); }

    template <typename Widget>
    Widget* named(const QString& name) const {
        for (Widget* widget : window()->findChildren<Widget*>()) {
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
            if (widget->accessibleName() == name || (accessible && accessible->text(QAccessible::Name) == name)) {
                return widget;
            }
        }
        ADD_FAILURE() << "no " << qPrintable(name);
        return nullptr;
    }
    QAbstractButton* button(const char* name) const { return named<QAbstractButton>(QString::fromLatin1(name)); }
    QLineEdit* field(const char* name) const { return named<QLineEdit>(QString::fromLatin1(name)); }

    Testing::HandTurnedTime time;
    Testing::RecordingOwner owner;
    std::unique_ptr<PreferencesWindowController> controller;
};

TEST_F(PreferencesWindowTest, AnotherAccountHasAnotherStationUnlessOneIsTyped) {
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

TEST_F(PreferencesWindowTest, EveryControlIsReachedByTabAndHasAName) {
    for (const auto tab :
         {PreferencesInitialTab::general, PreferencesInitialTab::account, PreferencesInitialTab::notifications}) {
        PreferencesDraft draft;
        draft.password = QStringLiteral("secret");
        open(tab, draft);
        QSet<QWidget*> reached;
        for (int presses = 0; presses < 20; ++presses) {
            QWidget* focused = QApplication::focusWidget();
            ASSERT_TRUE(focused);
            EXPECT_FALSE(QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name).isEmpty())
                << focused->metaObject()->className();
            reached.insert(focused);
            QTest::keyClick(focused, Qt::Key_Tab);
        }
        QWidget* pane = tabs()->currentWidget();
        for (QWidget* control : pane->findChildren<QWidget*>()) {
            const bool isControl = qobject_cast<QAbstractButton*>(control) || qobject_cast<QComboBox*>(control) ||
                                   qobject_cast<QSpinBox*>(control) || qobject_cast<QLineEdit*>(control);
            const bool isPart = qobject_cast<QSpinBox*>(control->parentWidget()) != nullptr;
            if (isControl && !isPart && control->isVisible() && control->isEnabled()) {
                EXPECT_TRUE(reached.contains(control)) << control->metaObject()->className();
            }
        }
    }
}

TEST_F(PreferencesWindowTest, NoTwoControlsOnDisplayShareAMnemonic) {
    open(PreferencesInitialTab::general);
    button("Advanced")->click();
    for (int pane = 0; pane < tabs()->count(); ++pane) {
        QStringList texts{tabs()->tabText(0), tabs()->tabText(1), tabs()->tabText(2)};
        for (const auto* label : tabs()->widget(pane)->findChildren<QLabel*>()) {
            texts += label->buddy() ? label->text() : QString();
        }
        for (const auto* control : tabs()->widget(pane)->findChildren<QAbstractButton*>()) {
            texts += control->text();
        }
        QStringList mnemonics;
        for (const QString& text : texts) {
            mnemonics += QKeySequence::mnemonic(text).toString();
        }
        mnemonics.removeAll(QString());
        EXPECT_EQ(mnemonics.removeDuplicates(), 0) << qPrintable(texts.join(u' '));
    }
}

TEST_F(PreferencesWindowTest, OpensOnTheAskedPaneWithTheFocusOnTheFirstUsefulField) {
    PreferencesDraft withAccount;
    withAccount.account = QStringLiteral("sun@example.com");
    open(PreferencesInitialTab::general);
    EXPECT_TRUE(qobject_cast<QSpinBox*>(QApplication::focusWidget()));
    open(PreferencesInitialTab::account);
    EXPECT_EQ(QApplication::focusWidget(), field("Account"));
    open(PreferencesInitialTab::account, withAccount);
    EXPECT_EQ(QApplication::focusWidget(), field("Password"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("x"));
    controller->showWindowAndFocus();
    EXPECT_EQ(QApplication::focusWidget(), field("Password"));
    open(PreferencesInitialTab::notifications);
    EXPECT_EQ(QApplication::focusWidget(), button("Production starts"));
}

TEST_F(PreferencesWindowTest, TheWindowFollowsThePaneInHeightAlone) {
    open(PreferencesInitialTab::account);
    const QSize account = window()->size();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    Testing::settle();
    EXPECT_EQ(tabs()->currentIndex(), 2);
    EXPECT_EQ(window()->width(), account.width());
    EXPECT_LT(window()->height(), account.height());
    EXPECT_EQ(window()->minimumSize(), window()->maximumSize());
    tabs()->setCurrentIndex(1);
    Testing::settle();
    button("Advanced")->click();
    Testing::settle();
    EXPECT_GT(window()->height(), account.height());
    EXPECT_EQ(window()->width(), account.width());
}

TEST_F(PreferencesWindowTest, EverySwitchAndPickerEditsItsOwnField) {
    PreferencesDraft expected;
    expected.pollIntervalSeconds = 330; // between two steps, where it stays
    open(PreferencesInitialTab::general, expected);
    named<QComboBox>(QStringLiteral("Chart scale"))->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    expected.chartScaleMode = ChartScaleMode::fixed;
    EXPECT_EQ(owner.autoSaved, std::vector{expected});
    named<QComboBox>(QStringLiteral("Icon appearance"))->setCurrentIndex(2);
    expected.iconAppearanceMode = IconAppearanceMode::dark;
    EXPECT_EQ(owner.autoSaved.back(), expected);
    const std::pair<const char*, bool PreferencesDraft::*> switches[] = {
        {"Show output chart", &PreferencesDraft::showOutputChart},
        {"Show dock icon", &PreferencesDraft::showDockIcon},
        {"Launch at login", &PreferencesDraft::launchAtLogin},
        {"Production starts", &PreferencesDraft::notifyOnProductionStart},
        {"Production ends", &PreferencesDraft::notifyOnProductionEnd},
        {"Output rises above 1 kW", &PreferencesDraft::notifyOnProductionRiseAboveOneKilowatt},
    };
    for (const auto& [name, field] : switches) {
        button(name)->click();
        expected.*field = !(expected.*field);
        EXPECT_EQ(owner.autoSaved.back(), expected) << name;
    }
    EXPECT_EQ(owner.autoSaved.size(), 2 + std::size(switches));
}

TEST_F(PreferencesWindowTest, ATypedIntervalIsHandedOnByReturnLeavingAndClosing) {
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"Return", [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); }},
        {"leaving", [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }},
        {"Esc", [this] { QTest::keyClick(window(), Qt::Key_Escape); }},
        {"Ctrl+W", [this] { QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier); }},
        {"close()", [this] { controller->close(); }},
    };
    owner.onClosed = [this] { controller.reset(); };
    for (const auto& [name, end] : rows) {
        SCOPED_TRACE(name);
        owner.autoSaved.clear();
        open(PreferencesInitialTab::general);
        QApplication::focusWidget()->findChild<QLineEdit*>()->selectAll();
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("45"));
        EXPECT_TRUE(owner.autoSaved.empty());
        end();
        ASSERT_EQ(owner.autoSaved.size(), 1U);
        EXPECT_EQ(owner.autoSaved.front().pollIntervalSeconds, 2700);
        time.advance(Seconds(2));
        EXPECT_EQ(owner.autoSaved.size(), 1U);
    }
    EXPECT_EQ(owner.closings, 2) << "only the user's own closing is told";
}

TEST_F(PreferencesWindowTest, TheOwnerMayDropTheWindowWithinItsHandlers) {
    open(PreferencesInitialTab::general);
    owner.onAutoSave = [this] { controller.reset(); };
    button("Show dock icon")->click();
    EXPECT_FALSE(controller);
    Testing::settle();
    QMenu menu(QStringLiteral("Varnel"));
    menu.addAction(QStringLiteral("Settings"), QKeySequence(QStringLiteral("Ctrl+,")), [this] { controller.reset(); });
    open(PreferencesInitialTab::account);
    controller->setApplicationMenu(&menu);
    Testing::settle();
    QTest::keyClick(window(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_FALSE(controller);
}

TEST_F(PreferencesWindowTest, ReturnInAFieldSavesAndTheFieldsRestWhileSigningIn) {
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

TEST_F(PreferencesWindowTest, TheWindowMayCloseWhileASaveGoesOn) {
    open(PreferencesInitialTab::account);
    button("Save and Connect")->click();
    controller->close();
    controller.reset();
    Testing::settle();
    owner.endSave(true);
    Testing::settle();
    EXPECT_EQ(owner.saved.size(), 1U);
}

TEST_F(PreferencesWindowTest, ThePasswordIsHiddenUntilRevealedAndGoesWithTheSignOut) {
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

TEST_F(PreferencesWindowTest, ARefusedLaunchAtLoginPutsTheSwitchBackAndSaysWhyUntilTheNextTry) {
    open(PreferencesInitialTab::general);
    const QString why = QStringLiteral("Launch at login update failed: disk full");
    owner.onAutoSave = [&] { controller->showLaunchAtLoginError(why, false); };
    button("Launch at login")->click();
    EXPECT_FALSE(button("Launch at login")->isChecked());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // hands on what there is
    EXPECT_EQ(owner.autoSaved.size(), 1U) << "what the system reports is no edit";
    EXPECT_TRUE(named<QLabel>(why)->isVisible());
    QLabel* line = named<QLabel>(why);
    owner.onAutoSave = [] {};
    button("Launch at login")->click();
    EXPECT_FALSE(line->isVisible());
}

} // namespace
} // namespace Varnel
