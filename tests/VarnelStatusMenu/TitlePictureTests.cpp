#include <VarnelStatusMenu/Linux/ItemFace.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <gtest/gtest.h>

using namespace Varnel;

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

const QString longTitle = QStringLiteral("A much longer title than any panel has room for");

} // namespace

TEST(TitleForm, FollowsTheProgramBehindThePanel) {
    const std::pair<const char*, TitleForm> rows[] = {
        {"/usr/bin/mate-panel --replace", TitleForm::label},
        {"/usr/lib/mate-panel/notification-area-applet", TitleForm::label},
        {"/usr/bin/gnome-shell", TitleForm::label},
        {"waybar", TitleForm::widePicture},
        {"xfce4-panel", TitleForm::square},
        {"/opt/waybar/other", TitleForm::square},
        {"", TitleForm::square},
    };
    for (const auto& [commandLine, form] : rows) {
        const QStringList words = QString::fromLatin1(commandLine).split(u' ', Qt::SkipEmptyParts);
        EXPECT_EQ(titleFormForHost(words), form) << commandLine;
    }
}

TEST(TitlePicture, SquareShowsTheNumberLargeAboveItsUnitInsideTheBadge) {
    for (const char* title : {"3.42 kW", "SEMS --", "12.34 kW", "1234.56 kW", "1 234 kW "}) {
        for (const int size : {16, 22, 24, 48}) {
            const QImage image = squareTitlePicture(QString::fromLatin1(title), size);
            ASSERT_EQ(image.size(), QSize(size, size));
            const QRect ink = inkOf(image, image.rect());
            EXPECT_TRUE(image.rect().adjusted(1, 1, -1, -1).contains(ink)) << size;
            EXPECT_GE(ink.height(), size / 2) << "both lines are there at " << size;
            EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "the badge is round";
        }
    }
    const QImage image = squareTitlePicture(QStringLiteral("381 W"), 48);
    const QRect upper = inkOf(image, QRect(0, 0, 48, 26));
    const QRect lower = inkOf(image, QRect(0, 26, 48, 22));
    EXPECT_GT(upper.height(), lower.height());
    EXPECT_GT(upper.width(), lower.width());
}

TEST(TitlePicture, WideGrowsWithTheTextUpToItsBound) {
    const QImage usual = wideTitlePicture(QStringLiteral("3.42 kW"), 22);
    const QImage longer = wideTitlePicture(longTitle, 22);
    EXPECT_GT(usual.width(), 22);
    EXPECT_LT(usual.width(), 100);
    EXPECT_LE(longer.width(), 22 * 8);
    EXPECT_TRUE(longer.rect().adjusted(2, 2, -2, -2).contains(inkOf(longer, longer.rect())));
    EXPECT_NEAR(wideTitlePicture(QStringLiteral("3.42 kW"), 44).width(), 2 * usual.width(), 6);
}

TEST(ItemFace, HasPicturesOfItsFormAndALabelWhereAskedFor) {
    const ItemFace label = itemFace(longTitle, {}, TitleForm::label, 1);
    EXPECT_EQ(label.label, QStringLiteral("A much longer title tha…"));
    EXPECT_EQ(label.icon, itemFace(QStringLiteral("other"), {}, TitleForm::label, 1).icon);
    const ItemFace wide = itemFace(QStringLiteral("3.42 kW"), {}, TitleForm::widePicture, 1.5);
    ASSERT_EQ(wide.icon.size(), 1);
    EXPECT_EQ(wide.icon.first().height, 48);
    EXPECT_TRUE(wide.label.isEmpty());
    for (const ItemPixmap& pixmap : itemFace(QStringLiteral("3.42 kW"), {}, TitleForm::square, 1).icon) {
        EXPECT_EQ(pixmap.width, pixmap.height);
    }
}

TEST(ItemFace, SendsPixelsAlphaFirst) {
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(1, 2, 3));
    image.setPixelColor(1, 0, QColor(255, 255, 255, 0));
    EXPECT_EQ(itemPixmap(image).pixels, QByteArray::fromHex("ff01020300000000"));
}
