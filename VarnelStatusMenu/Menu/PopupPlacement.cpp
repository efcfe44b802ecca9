#include <VarnelStatusMenu/Menu/PopupPlacement.h>

#include <QGuiApplication>
#include <QProcessEnvironment>
#include <QScreen>
#include <QStringList>

#include <algorithm>

namespace Varnel {

namespace {

enum class Desktop { gnome, plasma, other };

Desktop desktopOf(const QProcessEnvironment& environment) {
    const QStringList names = environment.value(QStringLiteral("XDG_CURRENT_DESKTOP")).split(QLatin1Char(':'));
    if (names.contains(QStringLiteral("GNOME"), Qt::CaseInsensitive)) {
        return Desktop::gnome;
    }
    return names.contains(QStringLiteral("KDE"), Qt::CaseInsensitive) ? Desktop::plasma : Desktop::other;
}

bool isSet(const QProcessEnvironment& environment, const QString& name) {
    return !environment.value(name).isEmpty();
}

PopupWay popupWay(const QString& platformName, bool isWaylandSession, Desktop desktop) {
    if (platformName.startsWith(QStringLiteral("wayland"))) {
        return desktop == Desktop::other ? PopupWay::floatingWindow : PopupWay::maximizedCover;
    }
    if (platformName != QStringLiteral("xcb") || !isWaylandSession) {
        return PopupWay::menu;
    }
    return desktop == Desktop::gnome ? PopupWay::placedCover : PopupWay::placedWindow;
}

} // namespace

PopupSession popupSession(const QString& platformName, const QProcessEnvironment& environment) {
    const Desktop desktop = desktopOf(environment);
    const bool isWaylandSession = isSet(environment, QStringLiteral("WAYLAND_DISPLAY"));
    return {popupWay(platformName, isWaylandSession, desktop),
            desktop == Desktop::plasma ? Qt::BottomRightCorner : Qt::TopRightCorner};
}

QByteArray preferredPlatforms(const QProcessEnvironment& environment) {
    const bool hasBoth =
        isSet(environment, QStringLiteral("DISPLAY")) && isSet(environment, QStringLiteral("WAYLAND_DISPLAY"));
    const bool isChosen = isSet(environment, QStringLiteral("QT_QPA_PLATFORM"));
    return hasBoth && !isChosen && desktopOf(environment) != Desktop::other ? QByteArrayLiteral("xcb;wayland")
                                                                            : QByteArray();
}

void choosePlatform() {
    const QByteArray platforms = preferredPlatforms(QProcessEnvironment::systemEnvironment());
    if (!platforms.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", platforms);
    }
}

QRect announcedFreeArea(QPoint at) {
    const QScreen* screen = QGuiApplication::screenAt(at);
    return (screen != nullptr ? screen : QGuiApplication::primaryScreen())->availableGeometry();
}

QPoint inCorner(const QRect& area, QSize size, Qt::Corner corner) {
    const bool isRight = corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner;
    const bool isBottom = corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner;
    return {isRight ? area.x() + area.width() - size.width() : area.x(),
            isBottom ? area.y() + area.height() - size.height() : area.y()};
}

QPoint movedInside(const QRect& area, QPoint point, QSize size) {
    const QPoint last = inCorner(area, size, Qt::BottomRightCorner);
    // What is larger than the area keeps its upper left corner in it.
    return {std::max(area.x(), std::min(point.x(), last.x())), std::max(area.y(), std::min(point.y(), last.y()))};
}

QPoint cornerInMaximized(const QRect& screen, QSize window, QPoint item, QSize size) {
    const QPoint middle = screen.center();
    const QSize left = screen.size() - window;
    const QPoint origin =
        screen.topLeft() + QPoint(item.x() < middle.x() ? left.width() : 0, item.y() < middle.y() ? left.height() : 0);
    return movedInside(QRect(origin, window), item, size) - origin;
}

QPoint cornerAtPanel(const QRect& screen, const QRect& freeArea, QSize size, Qt::Corner usual) {
    const struct {
        int thickness;
        Qt::Corner corner;
    } edges[] = {
        {freeArea.top() - screen.top(), Qt::TopRightCorner},
        {screen.bottom() - freeArea.bottom(), Qt::BottomRightCorner},
        {freeArea.left() - screen.left(), Qt::BottomLeftCorner},
        {screen.right() - freeArea.right(), Qt::BottomRightCorner},
    };
    const auto thickest = std::max_element(std::begin(edges), std::end(edges), [](const auto& one, const auto& other) {
        return one.thickness < other.thickness;
    });
    return movedInside(freeArea, inCorner(freeArea, size, thickest->thickness > 0 ? thickest->corner : usual), size);
}

} // namespace Varnel
