#include <VarnelStatusMenu/Menu/CommandIcon.h>

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Varnel {

namespace {

// Symbols are drawn 13 units wide in a square of 16, with the origin in the middle.
constexpr qreal box = 16;
constexpr qreal strokeWidth = 1.3;

/// A circle, open at the upper right, that ends in an arrow head: turning clockwise.
QPainterPath refreshPath() {
    constexpr qreal radius = 5.2;
    const QRectF circle(-radius, -radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(circle, 20);
    path.arcTo(circle, 20, -310);
    const QPointF tip = path.currentPosition();
    path.moveTo(tip + QPointF(-0.6, -3.4));
    path.lineTo(tip + QPointF(0.9, 0.1));
    path.lineTo(tip + QPointF(-2.9, 1.1));
    return path;
}

/// A ring with eight teeth around a hole.
QPainterPath gearPath() {
    constexpr int teeth = 8;
    QPolygonF outline;
    for (int corner = 0; corner < teeth * 4; ++corner) {
        const qreal radius = corner % 4 < 2 ? 6.4 : 4.9;
        const qreal angle = 2 * std::numbers::pi * (corner + 0.5) / (teeth * 4);
        outline << QPointF(radius * std::cos(angle), radius * std::sin(angle));
    }
    QPainterPath path;
    path.addPolygon(outline);
    path.closeSubpath();
    path.addEllipse(QPointF(0, 0), 2.2, 2.2);
    return path;
}

QColor textColor(QIcon::Mode mode) {
    const QPalette palette = QApplication::palette("QMenu");
    switch (mode) {
    case QIcon::Normal:
        return palette.color(QPalette::Active, QPalette::WindowText);
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Active:
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    }
    return {};
}

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

GlyphIconEngine::GlyphIconEngine(Glyph glyph)
    : m_glyph(glyph) {}

void GlyphIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) {
    const qreal scale = std::min(rect.width(), rect.height()) / box;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center());
    painter->scale(scale, scale);
    const QPen pen(textColor(mode), strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter->strokePath(m_glyph == Glyph::refresh ? refreshPath() : gearPath(), pen);
    painter->restore();
}

QPixmap GlyphIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
}

QIconEngine* GlyphIconEngine::clone() const {
    return new GlyphIconEngine(m_glyph);
}

} // namespace

QIcon commandIcon(const QString& name) {
    if (name == QStringLiteral("view-refresh")) {
        return QIcon(new GlyphIconEngine(GlyphIconEngine::Glyph::refresh));
    }
    if (name == QStringLiteral("preferences-system")) {
        return QIcon(new GlyphIconEngine(GlyphIconEngine::Glyph::gear));
    }
    return {};
}

} // namespace Varnel
