#include <VarnelStatusMenu/CommandIcon.h>

#include <VarnelStatusMenu/GlyphIconEngine.h>

namespace Varnel {

QIcon commandIcon(const QString& name) {
    if (name.isEmpty() || QIcon::hasThemeIcon(name)) {
        return QIcon::fromTheme(name);
    }
    if (name == QLatin1String("view-refresh")) {
        return QIcon(new GlyphIconEngine(GlyphIconEngine::Glyph::refresh));
    }
    if (name == QLatin1String("preferences-system")) {
        return QIcon(new GlyphIconEngine(GlyphIconEngine::Glyph::gear));
    }
    return {};
}

} // namespace Varnel
