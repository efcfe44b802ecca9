#pragma once

#include <QIconEngine>

namespace Varnel {

/// Symbols of the menu's commands, drawn in the palette's colours at whatever size and scale they are asked for.
class GlyphIconEngine : public QIconEngine {
public:
    enum class Glyph { refresh, gear };

    explicit GlyphIconEngine(Glyph glyph);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;

private:
    Glyph m_glyph;
};

} // namespace Varnel
