#include "PreferencesWindowTest.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>

namespace Varnel {
namespace {

using GeneralPaneTest = Testing::PreferencesWindowTest;

TEST_F(GeneralPaneTest, EverySwitchAndPickerEditsItsOwnField) {
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

TEST_F(GeneralPaneTest, ATypedIntervalIsHandedOnByReturnLeavingAndClosing) {
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

TEST_F(GeneralPaneTest, ARefusedLaunchAtLoginPutsTheSwitchBackAndSaysWhyUntilTheNextTry) {
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

TEST_F(GeneralPaneTest, ARefusedDockIconIsSaidForAsLongAsItIsRefused) {
    open(PreferencesInitialTab::general);
    const QString why = QStringLiteral("This desktop offers no such entry. The switch takes effect on one that does.");
    owner.onAutoSave = [&] { controller->setDockIconRefused(button("Show dock icon")->isChecked()); };
    for (const bool isRefused : {true, false}) {
        button("Show dock icon")->click();
        EXPECT_EQ(named<QLabel>(why)->isVisible(), isRefused);
    }
}

} // namespace
} // namespace Varnel
