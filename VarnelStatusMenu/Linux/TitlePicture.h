#pragma once

#include <QImage>
#include <QString>

namespace Varnel {

/// The title on two lines, parted at its last space: "3.42" over "kW". The second line is empty when there is none.
struct TitleLines {
    QString upper;
    QString lower;
    bool operator==(const TitleLines&) const = default;
};
TitleLines titleLines(const QString& title);

/// The title as a label: at most 24 characters, a longer one ends in an ellipsis.
QString titleLabel(const QString& title);

// Pictures of the title. The colour of a panel cannot be known, so the text is white on a dark filled badge, which is
// readable on light and dark panels alike. Sizes are pixels of the device; every picture is transparent outside its
// badge and depends on nothing but the arguments and the application's font.

/// Whether the number is of now. An outdated one is drawn pale, and readable still.
enum class TitleAge { current, outdated };

/// The title on one line, as wide as the text needs, up to eight times its height; a longer title is elided.
QImage wideTitlePicture(const QString& title, int height, TitleAge age);

/// The title on two lines in a square, each line as large as the width allows; the number gets the larger share. "--"
/// is two short dashes in the middle of its line.
QImage squareTitlePicture(const QString& title, int size, TitleAge age);

/// A small sun: the icon beside a label, in panels that insist on one.
QImage sunPicture(int size, TitleAge age);

} // namespace Varnel
