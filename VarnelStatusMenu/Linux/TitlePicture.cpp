#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace Varnel {

namespace {

constexpr int longestLabel = 24;

struct Colors {
    QColor badge;
    QColor badgeEdge;
    QColor text;
    QColor sun;
};
constexpr Colors currentColors{{0x2b, 0x31, 0x3b}, {0xff, 0xff, 0xff, 0x46}, {0xff, 0xff, 0xff}, {0xf5, 0xa6, 0x23}};
/// The panel shines through, so that the item is pale on a light one and on a dark one.
constexpr Colors outdatedColors{
    {0x2b, 0x31, 0x3b, 0xbf}, {0xff, 0xff, 0xff, 0x23}, {0xff, 0xff, 0xff, 0x9e}, {0xf5, 0xa6, 0x23, 0x80}};
constexpr int smallestTextHeight = 6;

const Colors& colorsOf(TitleAge age) {
    return age == TitleAge::current ? currentColors : outdatedColors;
}

QImage transparentImage(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QFont titleFont(int pixelSize, int stretch) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setStretch(stretch);
    font.setWeight(QFont::DemiBold);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

/// What the ink of the text covers, relative to its base line's start.
QRectF inkOf(const QString& text, const QFont& font) {
    return QFontMetricsF(font).tightBoundingRect(text);
}

/// The narrowest letters that are still well read, in percent of the usual width.
constexpr std::array stretches{100, 87, 75};

bool fits(const QString& text, const QFont& font, QSizeF box) {
    const QSizeF ink = inkOf(text, font).size();
    return ink.width() <= box.width() && ink.height() <= box.height();
}

/// The largest font whose ink of `text` fits into the box: narrower letters before smaller ones. Where to look is
/// reckoned from one large font, because to try every size makes a font of each.
QFont fittingFont(const QString& text, QSizeF box) {
    constexpr int referenceSize = 64;
    const QSizeF ink = inkOf(text, titleFont(referenceSize, 100)).size() / referenceSize;
    // A text of little height is no larger than letters would be.
    const qreal tallest = box.height() / std::max(ink.height(), 0.6);
    const qreal widest = box.width() * 100 / (ink.width() * stretches.back());
    for (int pixelSize = static_cast<int>(std::min(tallest, widest)); pixelSize > smallestTextHeight; --pixelSize) {
        const qreal stretchThatFits = box.width() * 100 / (ink.width() * pixelSize);
        for (const int stretch : stretches) {
            const QFont font = titleFont(pixelSize, stretch);
            if (stretch <= stretchThatFits + 1 && fits(text, font, box)) {
                return font;
            }
        }
    }
    return titleFont(smallestTextHeight, stretches.back());
}

/// Two dashes in the middle of the box. As letters they would be made so large that they fill its width, two blocks.
void drawDashes(QPainter& painter, const QRectF& box) {
    const int width = std::max(3, static_cast<int>(std::lround(box.width() * 0.24)));
    const int thickness = std::max(1, static_cast<int>(std::lround(box.width() / 12.5)));
    const int gap = std::max(2, width / 2);
    const QPoint first(static_cast<int>(std::lround(box.center().x() - width - gap / 2.0)),
                       static_cast<int>(std::lround(box.center().y() - thickness / 2.0)));
    const QColor color = painter.pen().color();
    painter.fillRect(QRect(first, QSize(width, thickness)), color);
    painter.fillRect(QRect(first + QPoint(width + gap, 0), QSize(width, thickness)), color);
}

/// Draws the text with its ink in the middle of the box, on whole pixels so that the stems stay sharp.
void drawCentred(QPainter& painter, const QRectF& box, const QString& text) {
    if (text.isEmpty()) {
        return;
    }
    if (text == QStringLiteral("--")) {
        drawDashes(painter, box);
        return;
    }
    const QFont font = fittingFont(text, box.size());
    const QString shown = QFontMetricsF(font).elidedText(text, Qt::ElideRight, std::ceil(box.width()) + 1);
    const QRectF ink = inkOf(shown, font);
    painter.setFont(font);
    painter.drawText(
        QPointF(std::round(box.center().x() - ink.center().x()), std::round(box.center().y() - ink.center().y())),
        shown);
}

void drawBadge(QPainter& painter, const QRectF& box, const Colors& colors) {
    const qreal radius = box.height() / 6;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.badgeEdge, 1));
    painter.setBrush(colors.badge);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setPen(colors.text);
}

bool hasDigit(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar character) { return character.isDigit(); });
}

} // namespace

TitleLines titleLines(const QString& title) {
    const QString text = title.simplified();
    const qsizetype space = text.lastIndexOf(QLatin1Char(' '));
    return space < 0 ? TitleLines{text, {}} : TitleLines{text.left(space), text.mid(space + 1)};
}

QString titleLabel(const QString& title) {
    return title.size() <= longestLabel ? title : title.left(longestLabel - 1).trimmed() + QChar(0x2026);
}

QImage wideTitlePicture(const QString& title, int height, TitleAge age) {
    const int padding = height / 4;
    const QFont font = titleFont(static_cast<int>(std::lround(height * 0.62)), 100);
    const QFontMetricsF metrics(font);
    const QString shown = metrics.elidedText(title.simplified(), Qt::ElideRight, height * 8 - 2 * padding);
    const int width = static_cast<int>(std::ceil(metrics.horizontalAdvance(shown))) + 2 * padding;
    QImage image = transparentImage(std::max(width, height), height);
    QPainter painter(&image);
    drawBadge(painter, QRectF(image.rect()), colorsOf(age));
    painter.setFont(font);
    // The height of capitals, not the ink, centres the line: the text must not hop when a digit gives way to "g".
    painter.drawText(
        QPointF((image.width() - metrics.horizontalAdvance(shown)) / 2, std::round((height + metrics.capHeight()) / 2)),
        shown);
    return image;
}

QImage squareTitlePicture(const QString& title, int size, TitleAge age) {
    const TitleLines lines = titleLines(title);
    QImage image = transparentImage(size, size);
    QPainter painter(&image);
    drawBadge(painter, QRectF(image.rect()), colorsOf(age));
    const qreal margin = std::max(1.0, size / 16.0);
    const QRectF inside = QRectF(image.rect()).adjusted(margin, 2 * margin, -margin, -2 * margin);
    if (lines.lower.isEmpty()) {
        drawCentred(painter, inside, lines.upper);
        return image;
    }
    const qreal gap = margin;
    const qreal upperShare = hasDigit(lines.upper) == hasDigit(lines.lower) ? 0.5 : hasDigit(lines.upper) ? 0.56 : 0.5;
    const qreal upperHeight = (inside.height() - gap) * upperShare;
    drawCentred(painter, QRectF(inside.left(), inside.top(), inside.width(), upperHeight), lines.upper);
    drawCentred(painter, inside.adjusted(0, upperHeight + gap, 0, 0), lines.lower);
    return image;
}

QImage sunPicture(int size, TitleAge age) {
    QImage image = transparentImage(size, size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(size / 2.0, size / 2.0);
    const QColor color = colorsOf(age).sun;
    painter.setPen(QPen(color, size / 11.0, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(color);
    painter.drawEllipse(QPointF(0, 0), size * 0.18, size * 0.18);
    for (int ray = 0; ray < 8; ++ray) {
        const qreal angle = ray * std::numbers::pi / 4;
        const QPointF direction(std::cos(angle), std::sin(angle));
        painter.drawLine(direction * size * 0.34, direction * size * 0.43);
    }
    return image;
}

} // namespace Varnel
