#include "PreferencesWindowTest.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QSpinBox>

namespace Varnel {
namespace {

using Testing::PreferencesWindowTest;

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
    EXPECT_EQ(QAccessible::queryAccessibleInterface(window())->role(), QAccessible::Dialog);
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

} // namespace
} // namespace Varnel
