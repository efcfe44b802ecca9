#include <VarnelStatusMenu/Linux/ItemFace.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <tests/Support/Contrast.h>

#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Varnel;
using Varnel::Testing::luminanceOf;

namespace {

/// What is drawn in the colour of the text.
QRect inkOf(const QImage& image, const QRect& area) {
    QRect ink;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() == 255 && color.lightness() > 150) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

QImage laidOver(QColor panel, const QImage& picture) {
    QImage seen(picture.size(), QImage::Format_RGB32);
    seen.fill(panel);
    QPainter(&seen).drawImage(0, 0, picture);
    return seen;
}

/// How far the picture stands out: the contrast of its lightest pixel to its darkest, as accessibility guidelines
/// count it.
double contrastIn(const QImage& image) {
    double lightest = 0;
    double darkest = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double luminance = luminanceOf(image.pixelColor(x, y));
            lightest = std::max(lightest, luminance);
            darkest = std::min(darkest, luminance);
        }
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

const QString longTitle = QStringLiteral("A much longer title than any panel has room for");

} // namespace

TEST(PanelKind, FollowsTheProgramBehindThePanel) {
    const std::pair<const char*, PanelKind> rows[] = {
        {"/usr/bin/mate-panel --replace", {TitleForm::label, KeyNames::xServer}},
        {"/usr/lib/mate-panel/notification-area-applet", {TitleForm::label, KeyNames::xServer}},
        {"/usr/bin/gnome-shell", {TitleForm::label, KeyNames::xServer}},
        {"waybar", {TitleForm::widePicture, KeyNames::xServer}},
        {"xfce4-panel", {TitleForm::square, KeyNames::xServer}},
        {"/usr/bin/kded5", {TitleForm::square, KeyNames::qt}},
        {"lxqt-panel", {TitleForm::square, KeyNames::qt, false}},
        {"/opt/waybar/other", {TitleForm::square, KeyNames::xServer}},
        {"", {TitleForm::square, KeyNames::xServer}},
    };
    for (const auto& [commandLine, kind] : rows) {
        const QStringList words = QString::fromLatin1(commandLine).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        EXPECT_EQ(panelKind(words), kind) << commandLine;
    }
}

TEST(TitlePicture, SquareShowsTheNumberLargeAboveItsUnitInsideTheBadge) {
    for (const char* title : {"3.42 kW", "SEMS --", "12.34 kW", "1234.56 kW", "1 234 kW "}) {
        for (const int size : {16, 22, 24, 48}) {
            const QImage image = squareTitlePicture(QString::fromLatin1(title), size, TitleAge::current);
            ASSERT_EQ(image.size(), QSize(size, size));
            const QRect ink = inkOf(image, image.rect());
            EXPECT_TRUE(image.rect().adjusted(1, 1, -1, -1).contains(ink)) << size;
            EXPECT_GE(ink.height(), size / 2) << "both lines are there at " << size;
            EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "the badge is round";
        }
    }
    const QImage image = squareTitlePicture(QStringLiteral("381 W"), 48, TitleAge::current);
    const QRect upper = inkOf(image, QRect(0, 0, 48, 26));
    const QRect lower = inkOf(image, QRect(0, 26, 48, 22));
    EXPECT_GT(upper.height(), lower.height());
    EXPECT_GT(upper.width(), lower.width());
}

TEST(TitlePicture, NoValueIsTwoShortDashesInTheMiddleOfTheirLine) {
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        for (const auto& [title, top] : {std::pair("--", 0), {"SEMS --", size / 2 + 1}}) {
            const QImage image = squareTitlePicture(QString::fromLatin1(title), size, TitleAge::current);
            const QRect line(0, top, size, size - top);
            const QRect ink = inkOf(image, line);
            EXPECT_GE(ink.width(), 5 * ink.height()) << title << size;
            EXPECT_LE(ink.width(), size * 2 / 3) << title << size;
            EXPECT_NEAR(ink.center().x(), size / 2, 1) << title << size;
            EXPECT_LE(std::abs(ink.center().y() - (top + line.height() / 2)), size / 8 + 1) << title << size;
            int dashes = 0;
            for (int x = 1; x < size; ++x) {
                const auto isInk = [&](int at) { return image.pixelColor(at, ink.center().y()).lightness() > 150; };
                dashes += isInk(x) && !isInk(x - 1) && x > 1 ? 1 : 0;
            }
            EXPECT_EQ(dashes, 2) << title << size;
        }
    }
}

TEST(TitlePicture, OutdatedIsPaleAndReadableOnLightAndDarkPanels) {
    const QString title = QStringLiteral("3.42 kW");
    for (const QColor panel : {QColor(0xf0, 0xf0, 0xf0), QColor(0x2d, 0x2d, 0x2d)}) {
        for (const int size : {22, 48}) {
            // Without the edge, which shows the panel.
            const auto contrastOf = [&](const QImage& picture) {
                return contrastIn(laidOver(panel, picture).copy(picture.rect().adjusted(3, 3, -3, -3)));
            };
            const double square = contrastOf(squareTitlePicture(title, size, TitleAge::outdated));
            EXPECT_LT(square, 0.6 * contrastOf(squareTitlePicture(title, size, TitleAge::current)));
            EXPECT_GT(square, 3) << "large text can be read from three to one on";
            const double wide = contrastOf(wideTitlePicture(title, size, TitleAge::outdated));
            EXPECT_LT(wide, 0.6 * contrastOf(wideTitlePicture(title, size, TitleAge::current)));
            EXPECT_GT(wide, 3);
            const auto sunContrast = [&](TitleAge age) {
                return Testing::contrastOf(laidOver(panel, sunPicture(size, age)).pixelColor(size / 2, size / 2),
                                           panel);
            };
            EXPECT_LT(sunContrast(TitleAge::outdated), 0.8 * sunContrast(TitleAge::current));
        }
    }
}

TEST(TitlePicture, WideGrowsWithTheTextUpToItsBound) {
    const QImage usual = wideTitlePicture(QStringLiteral("3.42 kW"), 22, TitleAge::current);
    const QImage longer = wideTitlePicture(longTitle, 22, TitleAge::current);
    EXPECT_GT(usual.width(), 22);
    EXPECT_LT(usual.width(), 100);
    EXPECT_LE(longer.width(), 22 * 8);
    EXPECT_TRUE(longer.rect().adjusted(2, 2, -2, -2).contains(inkOf(longer, longer.rect())));
    EXPECT_NEAR(wideTitlePicture(QStringLiteral("3.42 kW"), 44, TitleAge::current).width(), 2 * usual.width(), 6);
}

TEST(ItemFace, HasPicturesOfItsFormAndALabelWhereAskedFor) {
    const ItemFace label = itemFace({longTitle, {}, {}, {}}, PanelKind{TitleForm::label}, 1);
    EXPECT_EQ(label.label, QStringLiteral("A much longer title tha…"));
    EXPECT_EQ(label.icon, itemFace({QStringLiteral("other"), {}, {}, {}}, PanelKind{TitleForm::label}, 1).icon);
    const ItemFace wide = itemFace({QStringLiteral("3.42 kW"), {}, {}, {}}, PanelKind{TitleForm::widePicture}, 1.5);
    ASSERT_EQ(wide.icon.size(), 1);
    EXPECT_EQ(wide.icon.first().height, 48);
    EXPECT_TRUE(wide.label.isEmpty());
    for (const ItemPixmap& pixmap :
         itemFace({QStringLiteral("3.42 kW"), {}, {}, {}}, PanelKind{TitleForm::square}, 1).icon) {
        EXPECT_EQ(pixmap.width, pixmap.height);
    }
}

TEST(ItemFace, AnOutdatedItemIsPaleInEveryFormAndSaysSo) {
    const StatusItemContent current{QStringLiteral("3.42 kW"), {}, {}, {}};
    StatusItemContent outdated = current;
    outdated.outdatedLine = QStringLiteral("Last reading at 16:05");
    for (const TitleForm form : {TitleForm::label, TitleForm::widePicture, TitleForm::square}) {
        const ItemFace face = itemFace(outdated, PanelKind{form}, 1);
        EXPECT_NE(face.icon, itemFace(current, PanelKind{form}, 1).icon);
        EXPECT_EQ(face.label, itemFace(current, PanelKind{form}, 1).label);
        EXPECT_EQ(face.iconDescription, QStringLiteral("3.42 kW. Last reading at 16:05"));
    }
    EXPECT_TRUE(itemFace(current, PanelKind{TitleForm::square}, 1).iconDescription.isEmpty());
}

TEST(ItemFace, HasTheSecondLineOfTheToolTipWhereThePanelShowsIt) {
    const StatusItemContent content{{}, QStringLiteral("Current Output: 3.42 kW\nLast reading at 16:05"), {}, {}};
    const ItemFace face = itemFace(content, PanelKind(), 1);
    EXPECT_EQ(face.toolTip, QStringLiteral("Current Output: 3.42 kW"));
    EXPECT_EQ(face.toolTipText, QStringLiteral("Last reading at 16:05"));
    const ItemFace titleOnly = itemFace(content, {TitleForm::square, KeyNames::qt, false}, 1);
    EXPECT_EQ(titleOnly.toolTip, content.toolTip);
    EXPECT_TRUE(titleOnly.toolTipText.isEmpty());
}

TEST(ItemFace, SendsPixelsAlphaFirst) {
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(1, 2, 3));
    image.setPixelColor(1, 0, QColor(255, 255, 255, 0));
    EXPECT_EQ(itemPixmap(image).pixels, QByteArray::fromHex("ff01020300000000"));
}
