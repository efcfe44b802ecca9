#pragma once

#include <VarnelPreferences/PreferencesWindowController.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "RecordingOwner.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

namespace Varnel::Testing {

/// The preferences window on the screen, with its controls found by the names that an assistive program reads.
class PreferencesWindowTest : public testing::Test {
protected:
    void open(PreferencesInitialTab tab, const PreferencesDraft& draft = {}) {
        controller = std::make_unique<PreferencesWindowController>(draft, false, false, tab, owner.handlers(), time);
        controller->showWindowAndFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(controller->window()));
        settle();
    }

    ~PreferencesWindowTest() override {
        controller.reset();
        settle();
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

    HandTurnedTime time;
    RecordingOwner owner;
    std::unique_ptr<PreferencesWindowController> controller;
};

} // namespace Varnel::Testing
