#include <Varnel/Linux/DarkPalette.h>

#include <QApplication>
#include <QPalette>

#include <utility>

namespace Varnel {

namespace {

/// Near the colours that GNOME's own programs have, so that the windows do not stand out between theirs.
QPalette darkPalette() {
    QPalette palette(QColor(0x3a, 0x3a, 0x3a), QColor(0x2e, 0x2e, 0x2e));
    for (const auto& [role, color] : {
             std::pair{QPalette::Base, QColor(0x1e, 0x1e, 0x1e)},
             std::pair{QPalette::AlternateBase, QColor(0x26, 0x26, 0x26)},
             std::pair{QPalette::PlaceholderText, QColor(0x9a, 0x9a, 0x9a)},
             std::pair{QPalette::Highlight, QColor(0x1c, 0x71, 0xd8)},
             std::pair{QPalette::HighlightedText, QColor(0xff, 0xff, 0xff)},
             std::pair{QPalette::Link, QColor(0x78, 0xae, 0xed)},
             std::pair{QPalette::LinkVisited, QColor(0xc0, 0x9a, 0xe0)},
             std::pair{QPalette::ToolTipBase, QColor(0x1e, 0x1e, 0x1e)},
             std::pair{QPalette::ToolTipText, QColor(0xff, 0xff, 0xff)},
         }) {
        palette.setColor(role, color);
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0x8c, 0x8c, 0x8c));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4a, 0x4a));
    return palette;
}

bool isLight(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() > palette.color(QPalette::WindowText).lightness();
}

} // namespace

void followDarkPreference(bool prefersDark) {
    QApplication::setPalette(QPalette()); // the colours of the platform, which may be dark already
    if (prefersDark && isLight(QApplication::palette())) {
        QApplication::setPalette(darkPalette());
    }
}

} // namespace Varnel
