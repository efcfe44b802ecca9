#include "../Support/HandTurnedTime.h"

#include <Varnel/StatusPresentationBuilder.h>

#include <gtest/gtest.h>

#include <ctime>

namespace Varnel {
namespace {

using Testing::june;

const StatusPresentationBuilder english{QLocale(QLocale::English, QLocale::UnitedKingdom)};

TEST(StatusPresentationBuilder, ShowsWhatIsKnownAndAChartOnlyWhileConnected) {
    const std::vector<OutputSample> samples = {{june(1, 9, 0), 2.0}};
    AppSettings settings;
    const auto build = [&](const StatusValues& values) {
        return english.build(values, samples, settings, june(1, 9, 0));
    };

    EXPECT_EQ(build({}).title, QStringLiteral("SEMS --"));
    EXPECT_EQ(build({}).outputChartYAxisMaxKW, std::nullopt);
    EXPECT_FALSE(build({}).showOutputChart || build({}).canRefresh || build({}).isSignedIn);
    const StatusPresentation waiting = build({.isConnected = true, .todayOutputKWh = 3.5});
    EXPECT_EQ(waiting.title, QStringLiteral("--"));
    EXPECT_EQ(waiting.outputValue, QStringLiteral("--"));
    EXPECT_EQ(waiting.todayOutputValue, QStringLiteral("3.50 kWh"));
    EXPECT_EQ(waiting.lastUpdatedValue, QStringLiteral("--"));
    const StatusPresentation shown = build({.isConnected = true,
                                            .powerKW = 0.05,
                                            .systemSizeKW = 2.1,
                                            .lastUpdatedAt = june(1, 9, 5),
                                            .errorMessage = QStringLiteral("Offline.")});
    EXPECT_EQ(shown.title, QStringLiteral("50 W"));
    EXPECT_EQ(shown.outputValue, shown.title);
    EXPECT_EQ(shown.todayOutputValue, QStringLiteral("--"));
    EXPECT_EQ(shown.lastUpdatedValue, QStringLiteral("09:05"));
    EXPECT_EQ(shown.errorLine, QStringLiteral("Offline."));
    EXPECT_TRUE(shown.showOutputChart && shown.canRefresh && shown.isSignedIn);
    EXPECT_EQ(shown.outputChartValues, std::vector<double>{2.0});
    EXPECT_EQ(shown.outputChartPointLabels, QStringList{QStringLiteral("09:00")});
    EXPECT_EQ(shown.outputChartYAxisMaxKW, 2.1);
    EXPECT_TRUE(build({.powerKW = 0.05, .lastUpdatedAt = june(1, 8, 0)}).outdatedLine) << "nobody renews it any more";
    settings.showOutputChart = false;
    EXPECT_FALSE(build({.isConnected = true}).showOutputChart);
    EXPECT_TRUE(build({.isConnected = true}).outputChartPointLabels.isEmpty());
}

// Labels are made once for each sample; what is shown must be as if they were made anew.
TEST(StatusPresentationBuilder, PointLabelsFollowWhateverBecomesOfTheSamples) {
    const StatusPresentationBuilder kept{QLocale(QLocale::English, QLocale::UnitedKingdom)};
    std::vector<OutputSample> samples;
    const auto expectRightLabels = [&](const char* what) {
        const Timestamp now = june(1, 12, 0);
        EXPECT_EQ(kept.build({.isConnected = true}, samples, {}, now).outputChartPointLabels,
                  english.chartPointLabels(samples))
            << what;
    };
    expectRightLabels("none");
    for (int minute = 0; minute < 30; minute += 7) {
        samples.push_back({june(1, 9, minute), 1.0});
        expectRightLabels("one more");
    }
    samples.back() = {june(1, 9, 45), 2.0};
    expectRightLabels("the last one replaced");
    samples.erase(samples.begin(), samples.begin() + 2);
    samples.push_back({june(1, 9, 50), 1.0});
    expectRightLabels("the oldest dropped");
    samples.insert(samples.begin() + 1, {june(1, 9, 16), 1.0});
    expectRightLabels("one put between");
    samples = {{june(1, 5, 0), 1.0}, {june(1, 9, 50), 1.0}};
    expectRightLabels("others");
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Asia/Tokyo");
    ::tzset();
    expectRightLabels("another zone");
    qputenv("TZ", zone);
    ::tzset();
    expectRightLabels("the first zone again");
    samples.clear();
    expectRightLabels("none again");
}

TEST(StatusPresentationBuilder, LabelsTheStartTheMiddleAndTheReferenceTime) {
    const std::vector<OutputSample> one = {{june(1, 9, 0), 1.0}};
    const auto labels = [&](Timestamp reference) { return english.chartXAxisLabels(one, reference).join(u' '); };
    EXPECT_EQ(labels(june(1, 11, 0)), QStringLiteral("09:00 10:00 11:00"));
    EXPECT_EQ(labels(june(1, 8, 0)), QStringLiteral("09:00 09:00 09:00"));
    EXPECT_TRUE(english.chartXAxisLabels({}, june(1, 11, 0)).isEmpty());
    const StatusPresentationBuilder american{QLocale(QLocale::English, QLocale::UnitedStates)};
    EXPECT_EQ(american.chartPointLabels(one).front().simplified(), QStringLiteral("9:00 AM"));
}

TEST(StatusPresentationBuilder, TheAxisGivesHeadroomButNotAboveTheStation) {
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
        EXPECT_DOUBLE_EQ(StatusPresentationBuilder::outputChartYAxisMaxKW(row.values, row.size, row.mode),
                         row.expected);
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
    EXPECT_EQ(StatusPresentationBuilder(QLocale::c()).formatTime(june(1, 9, 5)), QStringLiteral("09:05"));
}

} // namespace
} // namespace Varnel
