#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QApplication>

namespace Varnel {

namespace {

// The faintest label that still has a contrast of 4.5 to 1 with the usual light and dark window colours is at 0.55.
constexpr qreal secondaryAlpha = 0.8;
constexpr qreal tertiaryAlpha = 0.62;
constexpr qreal darkSeparatorAlpha = 0.5;
constexpr qreal lightSeparatorAlpha = 0.28; // about as dark as the usual Mid
constexpr int visibleStep = 20;             // of lightness, between a line and its window

/// Mid is made for light windows: on a dark one it is darker still and would not be seen. Of a GTK theme Qt 6.8 makes a
/// palette whose Mid is white.
QColor separatorColor(const QPalette& palette) {
    const QColor mid = palette.color(QPalette::Active, QPalette::Mid);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    if (text.lightness() > window.lightness()) {
        return withAlpha(text, darkSeparatorAlpha);
    }
    return window.lightness() - mid.lightness() >= visibleStep ? mid : withAlpha(text, lightSeparatorAlpha);
}

QFont menuFont(int pixels) {
    QFont font = MenuFonts::row();
    font.setPixelSize(pixels);
    return font;
}

} // namespace

QColor withAlpha(QColor color, qreal alpha) {
    color.setAlphaF(static_cast<float>(color.alphaF() * alpha));
    return color;
}

MenuColors MenuColors::of(const QPalette& palette) {
    const auto color = [&palette](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    const QColor label = color(QPalette::WindowText);
    return {.accent = color(QPalette::Highlight),
            .controlBackground = color(QPalette::Base),
            .separator = separatorColor(palette),
            .windowBackground = color(QPalette::Window),
            .label = label,
            .secondaryLabel = withAlpha(label, secondaryAlpha),
            .tertiaryLabel = withAlpha(label, tertiaryAlpha)};
}

QFont MenuFonts::row() {
    return QApplication::font("QMenu");
}

QFont MenuFonts::axisLabel() {
    return menuFont(9);
}

QFont MenuFonts::emptyChart() {
    return menuFont(11);
}

QFont MenuFonts::inspector() {
    QFont font = QApplication::font();
    font.setPixelSize(10);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace Varnel
