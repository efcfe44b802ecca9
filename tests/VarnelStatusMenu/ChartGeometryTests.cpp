#include <VarnelStatusMenu/Chart/ChartGeometry.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Varnel;

namespace {

const QStringList threeLabels{QStringLiteral("06:00"), QStringLiteral("09:00"), QStringLiteral("12:00")};

qreal sixPerLetter(const QString& text) {
    return 6.0 * static_cast<qreal>(text.size());
}

QSizeF textSize(const QString& text) {
    return {sixPerLetter(text), 12};
}

ChartLayout layoutOf(const StatusMenuChart& chart) {
    return chartLayout(chart, QSizeF(250, 112), sixPerLetter).value();
}

StatusMenuChart chartOf(std::vector<double> values, std::optional<double> maxKW = std::nullopt) {
    return {std::move(values), {}, {}, maxKW};
}

} // namespace

TEST(ChartLayout, ReservesGuttersForLabelsThatAreThere) {
    EXPECT_EQ(layoutOf(chartOf({1})).plotRect, QRectF(12, 8, 226, 96));
    EXPECT_EQ(layoutOf(chartOf({1})).chartRect, QRectF(20, 16, 210, 80));
    const StatusMenuChart labelled{{1}, threeLabels, {}, 2.5};
    EXPECT_EQ(layoutOf(labelled).chartRect, QRectF(20 + 18 + 8, 30, 210 - 26, 66));
    const StatusMenuChart withoutTicks{{1}, threeLabels, {}, std::nullopt};
    EXPECT_FALSE(chartLayout(withoutTicks, QSizeF(40, 112), sixPerLetter)) << "no room";
    EXPECT_FALSE(chartLayout(withoutTicks, QSizeF(250, 46), sixPerLetter)) << "no room";
    EXPECT_TRUE(chartLayout(withoutTicks, QSizeF(41, 47), sixPerLetter));
}

TEST(ChartLayout, ChoosesTheTopOfTheScale) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        StatusMenuChart chart;
        double maxValue;
        QString ticks;
    } cases[] = {
        {"largest value", chartOf({1, 3, 2}), 3, {}},
        {"no values", chartOf({}), 0.1, {}},
        {"all zero", chartOf({0, 0}), 0.1, {}},
        {"fixed", chartOf({9}, 4.83), 4.83, QStringLiteral("4.8 2.4 0.0")},
        {"fixed, whole at one digit", chartOf({}, 4.98), 4.98, QStringLiteral("5 2.5 0.0")},
        {"fixed, raised", chartOf({}, 0.05), 0.1, QStringLiteral("0.1 0.1 0.0")},
        {"fixed, not a number", chartOf({}, notANumber), 0.1, QStringLiteral("0.1 0.1 0.0")},
    };
    for (const auto& [name, chart, maxValue, ticks] : cases) {
        const ChartLayout layout = layoutOf(chart);
        EXPECT_EQ(layout.maxValue, maxValue) << name;
        QStringList labels;
        for (const ChartTick& tick : layout.yTicks) {
            labels << tick.label;
        }
        EXPECT_EQ(labels.join(QLatin1Char(' ')).toStdString(), ticks.toStdString()) << name;
    }
}

TEST(ChartPoints, SpreadEvenlyAndStayInTheChart) {
    const struct {
        const char* name;
        StatusMenuChart chart;
        std::vector<QPointF> points;
    } cases[] = {
        {"none", chartOf({}), {}},
        {"a lone one in the middle", chartOf({2}, 4.0), {{125 + 13, 56}}},
        {"all zero at the bottom", chartOf({0, 0}), {{90, 16}, {160, 16}}},
        {"below zero, above the top", chartOf({-1, 9}, 4.0), {{46 + 184 / 3.0, 16}, {46 + 2 * 184 / 3.0, 96}}},
    };
    for (const auto& [name, chart, expected] : cases) {
        const ChartLayout layout = layoutOf(chart);
        EXPECT_EQ(chartPoints(chart.values, layout), expected) << name;
    }
}

TEST(ChartPoints, NearestIsTheEarlierOfTwo) {
    const std::vector<QPointF> points{{10, 0}, {20, 5}, {30, 0}};
    for (const auto& [x, index] : {std::pair(-5.0, 0), {15.0, 0}, {15.1, 1}, {24.9, 1}, {99.0, 2}}) {
        EXPECT_EQ(nearestPointIndex(points, x), static_cast<std::size_t>(index)) << x;
    }
    EXPECT_FALSE(nearestPointIndex({}, 1));
}

TEST(SmoothedCurve, LeansOnTheNeighboursAndDoesNotOvershoot) {
    const QRectF chart(0, 0, 100, 10);
    EXPECT_TRUE(smoothedSegments({{5, 5}}, chart).empty());
    const auto segments = smoothedSegments({{0, 0}, {10, 10}, {20, 10}, {30, 0}}, chart);
    ASSERT_EQ(segments.size(), 3U);
    EXPECT_EQ(segments[0], (CurveSegment{{1.6, 1.6}, {6.8, 8.4}, {10, 10}}));
    // The tangents would carry both control points above the chart: (20,10)/(30,0) pull them back to its top.
    EXPECT_EQ(segments[1], (CurveSegment{{13.2, 10}, {16.8, 10}, {20, 10}}));
    // A long step beside a short one: the control point stays between the neighbours.
    const auto uneven = smoothedSegments({{0, 5}, {90, 5}, {91, 5}}, chart);
    EXPECT_EQ(uneven[1].control1, QPointF(91, 5));
}

TEST(ChartLabels, StandAtTheirGridLinesTheFirstTheMiddleAndTheLast) {
    const auto ticks = placedYTicks(layoutOf({{1}, threeLabels, {}, 2.5}), textSize);
    ASSERT_EQ(ticks.size(), 3U);
    EXPECT_EQ(ticks[0].rect.topLeft(), QPointF(20, 96 - 12 + 1));
    EXPECT_EQ(ticks[1].rect.topLeft(), QPointF(20, 63 - 6));
    EXPECT_EQ(ticks[2].rect.topLeft(), QPointF(20, 30 - 1));

    const QRectF chart(50, 30, 180, 66);
    const auto label = [](const char* text, qreal left) {
        return PlacedText{QString::fromLatin1(text), QRectF(left, 15, 6, 12)};
    };
    const std::vector<PlacedText> cases[] = {
        {},
        {label("a", 50)},
        {label("a", 50), label("b", 137)},
        {label("a", 50), label("b", 137), label("c", 224)},
        {label("a", 50), label("c", 137), label("d", 224)},
    };
    const QStringList letters{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")};
    for (qsizetype count = 0; count < 5; ++count) {
        EXPECT_EQ(placedXAxisLabels(letters.first(count), chart, textSize), cases[count]) << count;
    }
}

TEST(InspectorBubble, StaysInsideAtBothEdges) {
    const QRectF chart(50, 30, 180, 66);
    for (const auto& [x, left] : {std::pair(140.0, 140 - 22.0), {55.0, 52.0}, {229.0, 230 - 2 - 44.0}}) {
        const InspectorBubble bubble = inspectorBubble(QStringLiteral("12345"), x, chart, textSize);
        EXPECT_EQ(bubble.rect, QRectF(left, 96 - 18 - 4, 44, 18)) << x;
        EXPECT_EQ(bubble.text.rect.topLeft(), bubble.rect.topLeft() + QPointF(7, 3)) << x;
    }
}
