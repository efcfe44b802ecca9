#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>
#include <VarnelStatusMenu/Menu/MenuEntryView.h>
#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>
#include <VarnelStatusMenu/Menu/StatusPopup.h>
#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <tests/Support/EventLoop.h>

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMap>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>

#include <gtest/gtest.h>

using namespace Varnel;
using Varnel::Testing::settle;

namespace {

using Commands = std::vector<StatusMenuCommand>;
using Keys = std::vector<QKeyCombination>;

StatusItemContent connected(const QString& output = QStringLiteral("3.50 kW"), bool canRefresh = true) {
    StatusPresentation presentation;
    presentation.outputValue = output;
    presentation.outputChartValues = {1, 2, 3};
    presentation.showOutputChart = presentation.isSignedIn = true;
    presentation.canRefresh = canRefresh;
    return {output, {}, statusMenu(presentation), {}};
}

template <typename Widget>
Widget* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* found = qobject_cast<Widget*>(widget);
        if (found != nullptr && found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}

/// To the window's focused widget, as the window system delivers keys.
void press(QWidget* window, const Keys& keys) {
    for (const QKeyCombination key : keys) {
        QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers());
        QApplication::sendEvent(window->focusWidget() != nullptr ? window->focusWidget() : window, &event);
    }
}

/// A step of a click or drag with the left button.
void mouse(QWidget* widget, QEvent::Type type, QPoint position) {
    const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const QPointF global = widget->mapToGlobal(position);
    QMouseEvent event(type, position, global, Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

QStringList rowsOf(const QWidget* window) {
    QStringList rows;
    for (const auto* row : window->findChildren<MenuRowView*>()) {
        rows << row->accessibleName();
    }
    return rows;
}

/// The roles and names of what an assistive technology finds below it, in their order.
QStringList treeBelow(QAccessibleInterface* parent) {
    const QMap<QAccessible::Role, QString> roles{
        {QAccessible::Graphic, QStringLiteral("graphic")},   {QAccessible::StaticText, QStringLiteral("text")},
        {QAccessible::MenuItem, QStringLiteral("item")},     {QAccessible::Separator, QStringLiteral("separator")},
        {QAccessible::Whitespace, QStringLiteral("filler")},
    };
    QStringList tree;
    for (int index = 0; index < parent->childCount(); ++index) {
        QAccessibleInterface* child = parent->child(index);
        EXPECT_EQ(parent->indexOfChild(child), index);
        EXPECT_EQ(child->parent(), parent);
        tree << (roles.value(child->role()) + QLatin1Char(' ') + child->text(QAccessible::Name)).trimmed();
    }
    return tree;
}

class StatusMenuPresenterTest : public testing::Test {
protected:
    StatusMenuPresenterTest() {
        presenter.setContent(connected());
        presenter.setCommandHandler([this](StatusMenuCommand command) {
            chosen.push_back(command);
            wasOpenWhenChosen = presenter.isMenuOpen();
        });
    }

    StatusPopupMenu* openPopup() {
        presenter.toggleMenu();
        return shown<StatusPopupMenu>();
    }

    StatusMenuPresenter presenter;
    Commands chosen;
    bool wasOpenWhenChosen = false;
};

} // namespace

TEST_F(StatusMenuPresenterTest, PopupHasTheStatedSizes) {
    StatusPopupMenu* popup = openPopup();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->findChild<OutputChartMenuView*>()->size(), QSize(250, 112));
    for (const auto* row : popup->findChildren<MenuRowView*>()) {
        EXPECT_EQ(row->size(), QSize(250, 22));
    }
}

TEST_F(StatusMenuPresenterTest, KeysChooseOnceAfterThePopupHasClosed) {
    const struct {
        const char* name;
        Keys keys;
        Commands chosen;
        bool isOpen = false;
        bool canRefresh = true;
    } rows[] = {
        {"Ctrl+R", {Qt::CTRL | Qt::Key_R}, {StatusMenuCommand::refresh}},
        {"Ctrl+R, disabled", {Qt::CTRL | Qt::Key_R}, {}, true, false},
        {"Ctrl+comma", {Qt::CTRL | Qt::Key_Comma}, {StatusMenuCommand::preferences}},
        {"first entry that is enabled", {Qt::Key_Down, Qt::Key_Return}, {StatusMenuCommand::preferences}, false, false},
        {"second entry", {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}, {StatusMenuCommand::preferences}},
        {"from below", {Qt::Key_Up, Qt::Key_Return}, {StatusMenuCommand::signOut}},
        {"Home", {Qt::Key_Up, Qt::Key_Home, Qt::Key_Return}, {StatusMenuCommand::refresh}},
        {"Home, first disabled", {Qt::Key_Home, Qt::Key_Return}, {StatusMenuCommand::preferences}, false, false},
        {"End", {Qt::Key_Down, Qt::Key_End, Qt::Key_Return}, {StatusMenuCommand::signOut}},
        {"Escape", {Qt::Key_Escape}, {}},
        {"without modifier", {Qt::Key_Comma}, {}, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        chosen.clear();
        presenter.setContent(connected({}, row.canRefresh));
        press(openPopup(), row.keys);
        EXPECT_TRUE(chosen.empty()) << "before the menu has closed";
        settle();
        EXPECT_EQ(chosen, row.chosen);
        EXPECT_FALSE(wasOpenWhenChosen);
        EXPECT_EQ(presenter.isMenuOpen(), row.isOpen);
        if (row.isOpen) {
            presenter.toggleMenu();
            settle();
        }
    }
}

TEST_F(StatusMenuPresenterTest, OpenPopupIsAMenuInTheAccessibleTree) {
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(qApp);
    const int windows = root->childCount();
    QAccessibleInterface* menu = QAccessible::queryAccessibleInterface(openPopup());
    ASSERT_EQ(root->childCount(), windows + 1);
    EXPECT_EQ(root->child(windows), menu);
    EXPECT_EQ(root->indexOfChild(menu), windows);
    EXPECT_EQ(menu->parent(), root);
    EXPECT_EQ(menu->role(), QAccessible::PopupMenu);
    EXPECT_EQ(treeBelow(menu).join(QLatin1Char('\n')).toStdString(),
              "graphic Today's output\nseparator\ntext Current Output: 3.50 kW\ntext Daily Output: --\n"
              "text Last Updated: --\nfiller\nseparator\nitem Refresh\nitem Settings…\nseparator\nitem Disconnect");
    EXPECT_FALSE(menu->child(0)->text(QAccessible::Description).isEmpty());
    QAccessibleInterface* refresh = menu->child(7);
    EXPECT_FALSE(refresh->text(QAccessible::Accelerator).isEmpty());
    refresh->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_EQ(chosen, Commands{StatusMenuCommand::refresh});
    EXPECT_EQ(root->childCount(), windows);
}

TEST_F(StatusMenuPresenterTest, WindowTellsAssistiveTechnologiesTheSameMenu) {
    presenter.showWindow();
    QAccessibleInterface* window = QAccessible::queryAccessibleInterface(shown<OutputWindow>());
    QAccessibleInterface* menu = window->child(0);
    EXPECT_EQ(menu->role(), QAccessible::PopupMenu);
    EXPECT_TRUE(treeBelow(menu).contains(QStringLiteral("item Settings…")));
    EXPECT_TRUE(treeBelow(menu).contains(QStringLiteral("graphic Today's output")));
}

TEST_F(StatusMenuPresenterTest, OpenPopupStaysAsItIsAndIsFreedWhenItCloses) {
    const QPointer<StatusPopupMenu> popup = openPopup();
    const QStringList before = rowsOf(popup);
    presenter.setContent(connected(QStringLiteral("9 W")));
    EXPECT_EQ(rowsOf(popup), before);
    presenter.toggleMenu();
    EXPECT_FALSE(presenter.isMenuOpen());
    settle();
    EXPECT_FALSE(popup);
    EXPECT_EQ(rowsOf(openPopup()).first().toStdString(), "Current Output: 9 W");
}

TEST_F(StatusMenuPresenterTest, ReleaseOfTheOpeningClickChoosesNothing) {
    StatusPopupMenu* popup = openPopup();
    const QPoint command = popup->actionGeometry(popup->actions().last()).center();
    mouse(popup, QEvent::MouseMove, command / 2);
    mouse(popup, QEvent::MouseMove, command);
    mouse(popup, QEvent::MouseButtonRelease, command);
    settle();
    EXPECT_TRUE(presenter.isMenuOpen());
    EXPECT_TRUE(chosen.empty());
}

TEST_F(StatusMenuPresenterTest, ClickChoosesAlsoWithoutAMovementBefore) {
    StatusPopupMenu* popup = openPopup();
    const QPoint chart = popup->actionGeometry(popup->actions().first()).center();
    mouse(popup, QEvent::MouseButtonPress, chart);
    mouse(popup, QEvent::MouseButtonRelease, chart);
    EXPECT_TRUE(presenter.isMenuOpen()) << "what cannot be chosen";
    const QPoint command = popup->actionGeometry(popup->actions().last()).center();
    mouse(popup, QEvent::MouseButtonPress, command);
    EXPECT_TRUE(presenter.isMenuOpen());
    EXPECT_EQ(popup->activeAction(), popup->actions().last());
    mouse(popup, QEvent::MouseButtonRelease, command);
    settle();
    EXPECT_EQ(chosen, Commands{StatusMenuCommand::signOut});
}

TEST_F(StatusMenuPresenterTest, ClickOnTheItemThatClosesThePopupDoesNotOpenItAgain) {
    mouse(openPopup(), QEvent::MouseButtonPress, {-20, -20});
    EXPECT_FALSE(presenter.isMenuOpen());
    presenter.toggleMenu();
    EXPECT_FALSE(presenter.isMenuOpen());
    presenter.toggleMenu();
    EXPECT_TRUE(presenter.isMenuOpen());
}

TEST_F(StatusMenuPresenterTest, WindowFollowsTheMenuAndKeepsTheFocusedCommand) {
    presenter.showWindow();
    auto* window = shown<OutputWindow>();
    ASSERT_TRUE(window);
    press(window, {Qt::Key_Down, Qt::Key_Down});
    StatusItemContent next = connected(QStringLiteral("9 W"));
    next.outdatedLine = QStringLiteral("Last reading at 16:05");
    presenter.setContent(next);
    settle();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("9 W"));
    EXPECT_EQ(window->accessibleDescription(), *next.outdatedLine);
    EXPECT_EQ(rowsOf(window).first().toStdString(), "Current Output: 9 W");
    press(window, {Qt::Key_Return, Qt::CTRL | Qt::Key_R});
    settle();
    EXPECT_EQ(chosen, (Commands{StatusMenuCommand::preferences, StatusMenuCommand::refresh}));
    EXPECT_TRUE(presenter.isWindowOpen());
    presenter.closeWindow();
    EXPECT_FALSE(presenter.isWindowOpen());
}

TEST_F(StatusMenuPresenterTest, KeysCloseTheWindow) {
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_Escape), Qt::CTRL | Qt::Key_W}) {
        presenter.showWindow();
        press(shown<OutputWindow>(), {Qt::Key_Down, key});
        EXPECT_FALSE(presenter.isWindowOpen()) << key.key();
        settle();
    }
}

TEST_F(StatusMenuPresenterTest, PopupStandsBesideThePanelThatThePointerIsIn) {
    const QRect wholeScreen = QGuiApplication::primaryScreen()->geometry();
    const struct {
        const char* panel;
        QMargins taken;
        QPoint pointer;
    } rows[] = {
        {"bottom", {0, 0, 0, 40}, {wholeScreen.width() / 2, wholeScreen.height() - 10}},
        {"left", {60, 0, 0, 0}, {20, wholeScreen.height() - 100}},
        {"right", {0, 0, 60, 0}, {wholeScreen.width() - 20, 100}},
    };
    for (const auto& [panel, taken, pointer] : rows) {
        const QRect free = wholeScreen.marginsRemoved(taken);
        StatusMenuPresenter placing([free](QPoint) { return free; });
        placing.setContent(connected());
        QCursor::setPos(pointer);
        placing.toggleMenu();
        const QRect popup = shown<StatusPopupMenu>()->geometry();
        EXPECT_TRUE(free.contains(popup)) << panel;
        EXPECT_TRUE(popup.adjusted(-61, -41, 61, 41).contains(pointer)) << panel << ": not far from the item";
        placing.toggleMenu();
        settle();
    }
}

TEST(StatusPopupWindow, ClosesBeforeACommandOnEscapeAndWithoutFocus) {
    const struct {
        Keys keys; ///< none: another window becomes the active one
        const char* outcome;
    } rows[] = {
        {{Qt::CTRL | Qt::Key_R}, "closed chosen "},
        {{Qt::Key_Up, Qt::Key_Return}, "closed chosen "},
        {{Qt::Key_Escape}, "closed "},
        {{}, "closed dismissed "},
    };
    for (const auto& [keys, expected] : rows) {
        StatusPopupWindow popup(connected().menu);
        std::string outcome;
        QObject::connect(&popup, &StatusPopupWindow::closed, [&] { outcome += "closed "; });
        QObject::connect(&popup, &StatusPopupWindow::commandChosen, [&] { outcome += "chosen "; });
        QObject::connect(&popup, &StatusPopupWindow::dismissed, [&] { outcome += "dismissed "; });
        popup.showMenu(std::nullopt);
        settle();
        press(&popup, keys);
        QEvent deactivation(QEvent::WindowDeactivate);
        QApplication::sendEvent(&popup, &deactivation);
        EXPECT_EQ(outcome, expected);
        EXPECT_FALSE(popup.isVisible());
    }
}

TEST(StatusPopupWindow, CoversTheAreaAndClosesByAClickBesideTheMenu) {
    const QRect area(0, 30, 700, 500);
    const QPoint corner(400, 30);
    StatusPopupWindow popup(connected().menu);
    int dismissals = 0;
    QObject::connect(&popup, &StatusPopupWindow::dismissed, [&] { ++dismissals; });
    popup.showOver(area, corner);
    settle();
    EXPECT_EQ(popup.geometry(), area);
    const QRect menu(popup.mapFromGlobal(corner), popup.menuSize());
    EXPECT_EQ(popup.childrenRect(), menu);
    EXPECT_EQ(popup.grab().toImage().pixelColor(menu.left() - 5, menu.center().y()).alpha(), 0);
    EXPECT_EQ(popup.grab().toImage().pixelColor(menu.left() + 5, menu.center().y()).alpha(), 255);
    mouse(&popup, QEvent::MouseButtonPress, menu.center());
    EXPECT_TRUE(popup.isVisible());
    mouse(&popup, QEvent::MouseButtonPress, menu.bottomLeft() + QPoint(0, 5));
    EXPECT_FALSE(popup.isVisible());
    EXPECT_EQ(dismissals, 1);
}

TEST(StatusPopupWindow, MaximizedHasTheMenuWhereItIsPutInItsSize) {
    StatusPopupWindow popup(connected().menu);
    const QSize size = popup.menuSize();
    popup.showMaximizedOver(
        [size](QSize window) { return QPoint(window.width() - size.width(), window.height() - size.height()); });
    settle();
    EXPECT_TRUE(popup.isMaximized());
    EXPECT_EQ(popup.childrenRect().bottomRight(), popup.rect().bottomRight());
}
