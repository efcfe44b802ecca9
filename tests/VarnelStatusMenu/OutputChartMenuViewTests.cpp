#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <tests/Support/Contrast.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <cmath>

using namespace Varnel;
using Varnel::Testing::contrastOf;

namespace {

constexpr QColor accent(0, 0, 255);

QPalette lightChart() {
    QPalette palette(QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::Highlight, accent);
    return palette;
}

QPalette darkChart() {
    QPalette palette(QColor(0x35, 0x36, 0x3a), QColor(0x2b, 0x2c, 0x30));
    palette.setColor(QPalette::Highlight, accent);
    return palette;
}

/// As Qt 6.8 makes it of a light GTK theme.
QPalette lightChartOfGtk() {
    QPalette palette(QColor(0xfa, 0xf9, 0xf8));
    palette.setColor(QPalette::Mid, Qt::white);
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    return palette;
}

/// The chart on white, without what is behind it.
QImage painted(OutputChartMenuView& view, qreal scale = 1) {
    view.setPalette(lightChart());
    view.resize(view.sizeHint());
    QImage image((QSizeF(view.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QImage painted(const std::vector<double>& values, qreal scale = 1) {
    OutputChartMenuView view({values, {}, {}, {}});
    return painted(view, scale);
}

void moveMouse(OutputChartMenuView& view, QPointF position) {
    QMouseEvent event(QEvent::MouseMove, position, position, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
}

/// The ratio of the colour, laid over the background, to that background, as accessibility guidelines count it.
double contrast(const QColor& color, const QColor& background) {
    const auto mix = [&](float over, float under) { return over * color.alphaF() + under * (1 - color.alphaF()); };
    const QColor seen = QColor::fromRgbF(mix(color.redF(), background.redF()), mix(color.greenF(), background.greenF()),
                                         mix(color.blueF(), background.blueF()));
    return contrastOf(seen, background);
}

} // namespace

// The chart of a view without labels lies in x 20 to 230 and, from the top, y 16 to 96.

TEST(OutputChartMenuView, PaintsTheCurveAtItsValues) {
    const QImage bottom = painted({0, 0});
    EXPECT_EQ(bottom.pixelColor(125, 95), accent);
    const QImage top = painted({5, 5});
    EXPECT_EQ(top.pixelColor(125, 16), accent);
    EXPECT_EQ(top.pixelColor(125, 60).blue(), 255); // the area: accent at low alpha over white
    EXPECT_NEAR(top.pixelColor(125, 60).red(), 255 * (1 - 0.18), 2);
    EXPECT_EQ(top.pixelColor(60, 60).red(), 255) << "beside the first point";
}

TEST(OutputChartMenuView, PaintsADotForOneValueAndTextForNone) {
    EXPECT_EQ(painted({5}).pixelColor(125, 16), accent);
    EXPECT_EQ(painted({5}).pixelColor(125, 60), QColor(Qt::white));
    const QImage empty = painted(std::vector<double>{});
    int darkPixels = 0;
    for (int x = 90; x < 160; ++x) {
        for (int y = 46; y < 66; ++y) {
            darkPixels += empty.pixelColor(x, y).lightness() < 128 ? 1 : 0;
        }
    }
    EXPECT_GT(darkPixels, 40);
}

TEST(OutputChartMenuView, DrawsThinLinesOnWholePixelsAtEveryScale) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage image = painted(std::vector<double>{1}, scale);
        // From left to right across the border of the background, and no further.
        std::vector<int> border(static_cast<std::size_t>(19 * scale));
        for (std::size_t x = 0; x < border.size(); ++x) {
            border[x] = image.pixelColor(static_cast<int>(x), image.height() / 2 + 6).lightness();
        }
        const int width = static_cast<int>(std::floor(scale));
        const int darkest = *std::min_element(border.begin(), border.end());
        EXPECT_EQ(std::count_if(border.begin(), border.end(), [&](int l) { return l < 255; }), width) << scale;
        EXPECT_EQ(std::count(border.begin(), border.end(), darkest), width) << scale;
        EXPECT_LT(darkest, 245) << scale;
    }
}

TEST(OutputChartMenuView, InspectsTheNearestPointWhileTheMouseIsInTheChart) {
    OutputChartMenuView view({{1, 2, 3}, {}, {QStringLiteral("06:00")}, {}});
    const QImage quiet = painted(view);
    const struct {
        QPointF mouse;
        std::optional<std::size_t> index;
    } cases[] = {
        {{21, 50}, 0}, {{125, 95}, 1}, {{229, 17}, 2}, {{15, 50}, std::nullopt}, {{125, 100}, std::nullopt},
    };
    for (const auto& [mouse, index] : cases) {
        moveMouse(view, mouse);
        EXPECT_EQ(view.inspectedIndex(), index) << mouse.x();
        EXPECT_EQ(painted(view) == quiet, !index) << mouse.x();
    }
    moveMouse(view, {125, 50});
    view.resize(30, 30);
    view.grab();
    EXPECT_FALSE(view.inspectedIndex()) << "no room";
    painted(view);
    moveMouse(view, {125, 50});
    ASSERT_TRUE(view.inspectedIndex());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    EXPECT_FALSE(view.inspectedIndex());
    OutputChartMenuView empty({});
    painted(empty);
    moveMouse(empty, {125, 50});
    EXPECT_FALSE(empty.inspectedIndex());
}

TEST(OutputChartMenuView, RunsFromRightToLeftInAMirroredLayout) {
    OutputChartMenuView view({{0, 5}, {}, {}, {}});
    view.setLayoutDirection(Qt::RightToLeft);
    const QImage image = painted(view);
    EXPECT_LT(image.pixelColor(95, 60).red(), 255) << "below the curve at the later point";
    EXPECT_EQ(image.pixelColor(155, 60).red(), 255) << "above it at the earlier one";
    moveMouse(view, {229, 50});
    EXPECT_EQ(view.inspectedIndex(), 0U);
    moveMouse(view, {21, 50});
    EXPECT_EQ(view.inspectedIndex(), 1U);
}

TEST(MenuColors, KeepTextReadableAndLinesVisible) {
    for (const QPalette& palette : {lightChart(), lightChartOfGtk(), darkChart()}) {
        const MenuColors colors = MenuColors::of(palette);
        for (const QColor& text : {colors.label, colors.secondaryLabel, colors.tertiaryLabel}) {
            EXPECT_GE(contrast(text, colors.windowBackground), 4.5) << text.alphaF();
        }
        EXPECT_GE(contrast(withAlpha(colors.separator, 0.35), colors.controlBackground), 1.15);
    }
}
