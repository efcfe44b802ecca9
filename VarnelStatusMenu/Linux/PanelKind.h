#pragma once

#include <QStringList>

namespace Varnel {

/// The form in which a panel can show the title so that it can be read.
enum class TitleForm {
    label,       ///< a text that the panel draws in its own font and colour
    widePicture, ///< a picture of the text as wide as it needs
    square,      ///< a square picture with the text on two lines
};

/// How a panel names the keys of a shortcut.
enum class KeyNames {
    xServer, ///< "comma"
    qt,      ///< ","
};

/// In what panels differ that show items of the item protocol. The default is right, or at least readable, for every
/// panel: a wide picture would be shrunk by most until nothing can be read.
struct PanelKind {
    TitleForm titleForm = TitleForm::square;
    KeyNames keyNames = KeyNames::xServer;
    bool showsToolTipText = true; ///< below the tooltip's title
    bool operator==(const PanelKind&) const = default;
};

/// The kind of the panel that runs as `commandLine`; the default for an unknown one and an empty list.
PanelKind panelKind(const QStringList& commandLine);

} // namespace Varnel
