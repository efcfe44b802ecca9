#include <Varnel/OutputChart.h>
#include <Varnel/TodayOutputSamples.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace Varnel {
namespace {

const StatusPresentationBuilder english{QLocale(QLocale::English, QLocale::UnitedKingdom)};

Timestamp at(int day, int hour, int minute, double seconds = 0) {
    return Timestamp::fromDateTime(QDateTime(QDate(2026, 6, day), QTime(hour, minute))) + Seconds(seconds);
}

std::vector<double> kilowatts(const TodayOutputSamples& today) {
    std::vector<double> values;
    for (const OutputSample& sample : today.samples()) {
        values.push_back(sample.kilowatts);
    }
    return values;
}

TEST(TodayOutputSamples, ReadingsThatArriveTogetherLeaveOneSample) {
    TodayOutputSamples today;
    today.record(1.0, at(1, 9, 0));
    today.record(2.0, at(1, 9, 0, 0.4));
    today.record(3.0, at(1, 9, 0, -0.3)); // the clock was set back a little
    today.record(-0.2, at(1, 9, 0, 0.7)); // a whole second after the last one
    EXPECT_EQ(kilowatts(today), (std::vector<double>{3.0, 0.0}));
    EXPECT_EQ(today.samples().front().timestamp, at(1, 9, 0, -0.3));
}

TEST(TodayOutputSamples, KeepsTheNewest1440) {
    TodayOutputSamples today;
    for (int i = 0; i <= 1440; ++i) {
        today.record(i, at(1, 0, 0, i * 30.0));
    }
    ASSERT_EQ(today.samples().size(), 1440U);
    EXPECT_EQ(today.samples().front().kilowatts, 1.0);
    today.restore(at(1, 0, 0), std::vector<OutputSample>(2000, OutputSample{at(1, 1, 0), 4.0}));
    EXPECT_EQ(today.samples().size(), 1440U);
}

TEST(TodayOutputSamples, AChangeOfTheZoneKeepsWhatIsStillToday) {
    TodayOutputSamples today;
    today.record(1.0, at(1, 0, 30));
    today.record(2.0, at(1, 9, 0));
    const Timestamp now = at(1, 10, 0);
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/London"); // the first sample lies in its yesterday
    ::tzset();
    today.resetIfNeeded(now);
    EXPECT_EQ(kilowatts(today), std::vector<double>{2.0});
    qputenv("TZ", zone);
    ::tzset();
}

TEST(TodayOutputSamples, TheDayOfAClockChangeIsOneDay) {
    TodayOutputSamples today;
    const auto beforeTheChange = Timestamp::fromDateTime(QDateTime(QDate(2026, 10, 25), QTime(0, 30)));
    for (int hour = 0; hour < 24; ++hour) {
        today.record(1.0, beforeTheChange + Seconds(hour * 3600.0));
    }
    EXPECT_EQ(today.samples().size(), 24U); // 25 hours long, and none of them rolled over
    today.record(1.0, beforeTheChange + Seconds(24.5 * 3600.0));
    EXPECT_EQ(today.samples().size(), 1U);
}

TEST(OutputChart, LabelsTheStartTheMiddleAndTheReferenceTime) {
    const std::vector<OutputSample> one = {{at(1, 9, 0), 1.0}};
    const auto labels = [&](Timestamp reference) { return chartXAxisLabels(one, reference, english).join(u' '); };
    EXPECT_EQ(labels(at(1, 11, 0)), QStringLiteral("09:00 10:00 11:00"));
    EXPECT_EQ(labels(at(1, 8, 0)), QStringLiteral("09:00 09:00 09:00"));
    EXPECT_TRUE(chartXAxisLabels({}, at(1, 11, 0), english).isEmpty());
    const StatusPresentationBuilder american{QLocale(QLocale::English, QLocale::UnitedStates)};
    EXPECT_EQ(chartPointLabels(one, american).front().simplified(), QStringLiteral("9:00 AM"));
}

TEST(OutputChart, TheAxisGivesHeadroomButNotAboveTheStation) {
    const struct {
        std::vector<double> values;
        std::optional<double> size;
        ChartScaleMode mode;
        double expected;
    } rows[] = {
        {{1.0, 2.0}, 5.0, ChartScaleMode::adaptive, 2.3},
        {{2.0}, 2.1, ChartScaleMode::adaptive, 2.1},
        {{2.0}, std::nullopt, ChartScaleMode::adaptive, 2.3},
        {{2.0}, 5.0, ChartScaleMode::fixed, 5.0},
        {{2.0}, std::nullopt, ChartScaleMode::fixed, 2.0},
        {{}, 5.0, ChartScaleMode::adaptive, 5.0},
        {{}, std::nullopt, ChartScaleMode::adaptive, 0.1},
        {{}, std::nullopt, ChartScaleMode::fixed, 0.1},
        {{0.0}, 0.0, ChartScaleMode::fixed, 0.1},
        {{0.0}, std::nullopt, ChartScaleMode::adaptive, 0.115},
    };
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(outputChartYAxisMaxKW(row.values, row.size, row.mode), row.expected);
    }
}

TEST(StatusPresentationBuilder, ShowsWattsBelowATenthOfAKilowatt) {
    const std::pair<double, const char*> rows[] = {
        {-0.5, "0 W"},  {0, "0 W"},       {0.0005, "1 W"},    {0.0456, "46 W"},
        {0.09, "90 W"}, {0.1, "0.10 kW"}, {1.234, "1.23 kW"}, {1234.5, "1,234.50 kW"}};
    for (const auto& [kilowatts, text] : rows) {
        EXPECT_EQ(english.formatPowerDisplay(kilowatts).toStdString(), text);
    }
    EXPECT_EQ(english.formatEnergyDisplay(3.5), QStringLiteral("3.50 kWh"));
    const StatusPresentationBuilder german{QLocale(QLocale::German)};
    EXPECT_EQ(german.formatPowerDisplay(1234.5), QStringLiteral("1.234,50 kW"));
    EXPECT_EQ(StatusPresentationBuilder(QLocale::c()).formatTime(at(1, 9, 5)), QStringLiteral("09:05"));
}

} // namespace
} // namespace Varnel
