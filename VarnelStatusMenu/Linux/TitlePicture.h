#pragma once

#include <QImage>
#include <QString>

namespace Varnel {

/// Pictures of the title. The colour of a panel cannot be known, so the text is white on a dark filled badge, which
/// is readable on light and dark panels alike. Sizes are pixels of the device; every picture is transparent outside
/// its badge and depends on nothing but the arguments and the application's font.

/// The title on one line, as wide as the text needs, up to eight times its height; a longer title is elided.
QImage wideTitlePicture(const QString& title, int height);

/// The title on two lines in a square, each line as large as the width allows; the number gets the larger share.
QImage squareTitlePicture(const QString& title, int size);

/// A small sun: the icon beside a label, in panels that insist on one.
QImage sunPicture(int size);

} // namespace Varnel
