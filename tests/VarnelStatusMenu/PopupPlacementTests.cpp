#include <VarnelStatusMenu/Linux/PanelFreeArea.h>
#include <VarnelStatusMenu/Menu/PopupPlacement.h>

#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace Varnel;

namespace {

/// "NAME=value NAME=value"
QProcessEnvironment environmentOf(const char* text) {
    QProcessEnvironment environment;
    for (const QString& variable : QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        environment.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));
    }
    return environment;
}

const QRect screen(0, 0, 1280, 800);
const QSize menuSize(250, 260);

} // namespace

TEST(PopupSession, IsDecidedByPlatformAndDesktop) {
    const struct {
        const char* platform;
        const char* environment;
        PopupSession session;
    } rows[] = {
        {"xcb", "XDG_CURRENT_DESKTOP=XFCE", {PopupWay::menu, Qt::TopRightCorner}},
        {"xcb", "XDG_CURRENT_DESKTOP=KDE", {PopupWay::menu, Qt::BottomRightCorner}},
        {"xcb", "WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=KDE", {PopupWay::placedWindow, Qt::BottomRightCorner}},
        {"xcb",
         "WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=ubuntu:GNOME",
         {PopupWay::placedCover, Qt::TopRightCorner}},
        {"xcb", "WAYLAND_DISPLAY=wayland-0", {PopupWay::placedWindow, Qt::TopRightCorner}},
        {"wayland", "WAYLAND_DISPLAY=wayland-0", {PopupWay::floatingWindow, Qt::TopRightCorner}},
        {"wayland-egl", "XDG_CURRENT_DESKTOP=GNOME", {PopupWay::maximizedCover, Qt::TopRightCorner}},
        {"wayland", "XDG_CURRENT_DESKTOP=KDE", {PopupWay::maximizedCover, Qt::BottomRightCorner}},
        {"offscreen", "WAYLAND_DISPLAY=wayland-0", {PopupWay::menu, Qt::TopRightCorner}},
    };
    for (const auto& [platform, environment, session] : rows) {
        EXPECT_EQ(popupSession(QString::fromLatin1(platform), environmentOf(environment)), session)
            << platform << ' ' << environment;
    }
}

TEST(PreferredPlatforms, AreX11FirstWhereBothAreOfferedAndNobodyHasChosen) {
    const std::pair<const char*, const char*> rows[] = {
        {"DISPLAY=:0 WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=GNOME", "xcb;wayland"},
        {"DISPLAY=:0 WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=KDE", "xcb;wayland"},
        {"DISPLAY=:0 WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=KDE QT_QPA_PLATFORM=wayland", ""},
        {"DISPLAY=:0 WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=sway", ""},
        {"WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=GNOME", ""},
        {"DISPLAY=:0 XDG_CURRENT_DESKTOP=GNOME", ""},
    };
    for (const auto& [environment, platforms] : rows) {
        EXPECT_EQ(preferredPlatforms(environmentOf(environment)), QByteArray(platforms)) << environment;
    }
}

TEST(PopupPlacement, MovesIntoTheAreaAsFarAsItTakes) {
    const QRect area(0, 30, 1280, 770);
    const struct {
        const char* name;
        QPoint point;
        QPoint corner;
    } rows[] = {
        {"in the middle", {400, 300}, {400, 300}},
        {"in a panel at the top", {600, 12}, {600, 30}},
        {"at the right end of it", {1270, 12}, {1030, 30}},
        {"at the foot", {600, 790}, {600, 540}},
    };
    for (const auto& [name, point, corner] : rows) {
        EXPECT_EQ(movedInside(area, point, menuSize), corner) << name;
    }
    EXPECT_EQ(movedInside(area, {50, 50}, QSize(2000, 2000)), QPoint(0, 30)) << "larger than the area";
}

TEST(PopupPlacement, FindsTheFreeCornerAtThePanel) {
    const struct {
        const char* panel;
        QRect freeArea;
        QPoint corner;
    } rows[] = {
        {"top", {0, 30, 1280, 770}, {1030, 30}},          {"bottom", {0, 0, 1280, 756}, {1030, 496}},
        {"left", {60, 0, 1220, 800}, {60, 540}},          {"right", {0, 0, 1220, 800}, {970, 540}},
        {"two of them", {0, 20, 1280, 730}, {1030, 490}}, {"none", screen, {1030, 540}},
    };
    for (const auto& [panel, freeArea, corner] : rows) {
        EXPECT_EQ(cornerAtPanel(screen, freeArea, menuSize, Qt::BottomRightCorner), corner) << panel;
    }
}

TEST(PopupPlacement, StandsAtTheItemInAMaximizedWindowThatLeavesThePanelFree) {
    const struct {
        const char* panel;
        QSize window;
        QPoint item;
        QPoint corner;
    } rows[] = {
        {"top", {1280, 756}, {1200, 22}, {1030, 0}},     {"bottom", {1280, 756}, {600, 778}, {600, 496}},
        {"left", {1236, 800}, {22, 400}, {0, 400}},      {"right", {1236, 800}, {1258, 780}, {986, 540}},
        {"none", {1280, 800}, {1279, 799}, {1030, 540}},
    };
    for (const auto& [panel, window, item, corner] : rows) {
        EXPECT_EQ(cornerInMaximized(screen, window, item, menuSize), corner) << panel;
    }
    EXPECT_EQ(cornerInMaximized(screen.translated(1280, 0), {1280, 756}, {1880, 22}, menuSize), QPoint(600, 0))
        << "on the right of two screens";
}

TEST(PanelFreeArea, LeavesOutAPanelThatReservesNoRoom) {
    const struct {
        const char* name;
        QRect panel;
        QRect free;
    } rows[] = {
        {"top", {0, 0, 1280, 30}, {0, 30, 1280, 770}},
        {"bottom", {0, 760, 1280, 40}, {0, 0, 1280, 760}},
        {"left", {0, 0, 60, 800}, {60, 0, 1220, 800}},
        {"right, floating", {1200, 100, 70, 600}, {0, 0, 1200, 800}},
        {"half the screen and more", {0, 0, 1280, 500}, screen},
        {"on another screen", {1280, 0, 1280, 30}, screen},
    };
    for (const auto& [name, panel, free] : rows) {
        EXPECT_EQ(largestPartBeside(screen, panel), free) << name;
    }
}
