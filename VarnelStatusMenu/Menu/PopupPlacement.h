#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <functional>

class QProcessEnvironment;

namespace Varnel {

/// How a pop-up stands and closes, by what the session lets a program do.
enum class PopupWay {
    menu,         ///< X11: a menu at the pointer; it takes the pointer and the keyboard for as long as it is open
    placedWindow, ///< an X11 program in a Wayland session: a frameless window at the item. Where the pointer is cannot
                  ///< be known, and a menu would get neither the keyboard nor clicks outside of it
    placedCover,  ///< the same, as a part of a transparent window over the free area: GNOME leaves the focus where it
                  ///< is on a click on the wallpaper, so the click has to land in a window of ours
    maximizedCover, ///< Wayland on GNOME and Plasma: the cover is maximised, because no window can be placed
    floatingWindow, ///< Wayland elsewhere: a window of a fixed size, which tiling desktops let float
};

/// What the program knows of the session's pop-ups.
struct PopupSession {
    PopupWay way = PopupWay::menu;
    Qt::Corner trayCorner = Qt::TopRightCorner; ///< where this desktop usually has its items

    bool operator==(const PopupSession&) const = default;
};

/// The one place that decides it: by the platform that Qt runs on and what the session says of itself.
PopupSession popupSession(const QString& platformName, const QProcessEnvironment& environment);

/// The value for QT_QPA_PLATFORM with which pop-ups stand where they belong: X11 first on GNOME and Plasma, where both
/// display servers are offered. Empty: what Qt chooses is right, or the person has chosen.
QByteArray preferredPlatforms(const QProcessEnvironment& environment);

/// Sets QT_QPA_PLATFORM to `preferredPlatforms` where there are any. Call it before the application object is made.
void choosePlatform();

/// What of the screen is free of panels, around a point of the desktop.
using FreeArea = std::function<QRect(QPoint at)>;

/// `FreeArea` as the desktop tells it to every program.
QRect announcedFreeArea(QPoint at);

/// The upper left corner of what stands in that corner of the area.
QPoint inCorner(const QRect& area, QSize size, Qt::Corner corner);

/// The upper left corner of what stands at `point` and has been moved as far as it takes to be inside the area.
QPoint movedInside(const QRect& area, QPoint point, QSize size);

/// The same in a maximised window's own coordinates, for a window that cannot know where it stands: what it leaves of
/// the screen is taken for the panel with the item, so it lies on the item's side.
QPoint cornerInMaximized(const QRect& screen, QSize window, QPoint item, QSize size);

/// The upper left corner of what stands in the free corner at the panel, which is where the free area ends before the
/// screen does; at the `usual` corner where no edge tells.
QPoint cornerAtPanel(const QRect& screen, const QRect& freeArea, QSize size, Qt::Corner usual);

} // namespace Varnel
