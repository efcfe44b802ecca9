#include <VarnelStatusMenu/Linux/ItemFace.h>
#include <VarnelStatusMenu/Linux/TitleForm.h>
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
    struct Case {
        QStringList commandLine;
        TitleForm form;
    };
    const Case cases[] = {{{QStringLiteral("/usr/bin/mate-panel"), QStringLiteral("--replace")}, TitleForm::label},
                          {{QStringLiteral("/usr/lib/mate-panel/notification-area-applet")}, TitleForm::label},
                          {{QStringLiteral("/usr/bin/gnome-shell")}, TitleForm::label},
                          {{QStringLiteral("waybar")}, TitleForm::widePicture},
                          {{QStringLiteral("xfce4-panel")}, TitleForm::square},
                          {{QStringLiteral("/opt/waybar/other")}, TitleForm::square},
                          {{}, TitleForm::square}};
    for (const Case& given : cases) {
        EXPECT_EQ(titleFormForHost(given.commandLine), given.form) << qPrintable(given.commandLine.join(u' '));
    }
}

TEST(TitleForm, PartsTheTitleAtItsLastSpace) {
    EXPECT_EQ(titleLines(QStringLiteral("3.42 kW")), (TitleLines{QStringLiteral("3.42"), QStringLiteral("kW")}));
    EXPECT_EQ(titleLines(QStringLiteral("1 234 kW ")), (TitleLines{QStringLiteral("1 234"), QStringLiteral("kW")}));
    EXPECT_EQ(titleLines(QStringLiteral("--")), (TitleLines{QStringLiteral("--"), QString()}));
}

TEST(TitlePicture, SquareShowsBothLinesInsideTheBadge) {
    for (const char* title : {"3.42 kW", "SEMS --", "12.34 kW", "1234.56 kW"}) {
        for (const int size : {16, 22, 24, 48}) {
            const QImage image = squareTitlePicture(QString::fromLatin1(title), size);
            ASSERT_EQ(image.size(), QSize(size, size));
            const QRect inside = image.rect().adjusted(1, 1, -1, -1);
            const QRect ink = inkOf(image, image.rect());
            EXPECT_TRUE(inside.contains(ink)) << size;
            EXPECT_GE(ink.height(), size / 2) << "both lines are there at " << size;
            EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "the badge is round";
        }
    }
}

TEST(TitlePicture, SquareGivesTheNumberTheLargerShare) {
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

TEST(ItemFace, HasOnePictureFormOnlyAndALabelWhereAskedFor) {
    const QString toolTip;
    const ItemFace label = itemFace(longTitle, toolTip, TitleForm::label, 1);
    EXPECT_EQ(label.label, QStringLiteral("A much longer title tha…"));
    EXPECT_EQ(label.title, longTitle);
    EXPECT_EQ(label.icon, itemFace(QStringLiteral("other"), toolTip, TitleForm::label, 1).icon);

    const ItemFace wide = itemFace(QStringLiteral("3.42 kW"), toolTip, TitleForm::widePicture, 1.5);
    ASSERT_EQ(wide.icon.size(), 1);
    EXPECT_EQ(wide.icon.first().height, 48);
    EXPECT_TRUE(wide.label.isEmpty());
    for (const ItemPixmap& pixmap : itemFace(QStringLiteral("3.42 kW"), toolTip, TitleForm::square, 1).icon) {
        EXPECT_EQ(pixmap.width, pixmap.height);
    }
}

TEST(ItemFace, SendsPixelsAlphaFirst) {
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(1, 2, 3));
    image.setPixelColor(1, 0, QColor(255, 255, 255, 0));
    const ItemPixmap pixmap = itemPixmap(image);
    EXPECT_EQ(pixmap.pixels, QByteArray::fromHex("ff01020300000000"));
}
