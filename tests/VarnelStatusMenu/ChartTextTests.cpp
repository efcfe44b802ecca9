#include <VarnelStatusMenu/Chart/ChartText.h>

#include <QLocale>

#include <gtest/gtest.h>

using namespace Varnel;

TEST(ChartText, FollowsTheUsersNumberFormat) {
    EXPECT_EQ(inspectorText(3.424, QStringLiteral("09:00")).toStdString(), "3.42 kW  09:00");
    EXPECT_EQ(inspectorText(-0.001, {}).toStdString(), "0.00 kW");
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(inspectorText(3.424, {}).toStdString(), "3,42 kW");
    EXPECT_EQ(axisTopText(4.96).toStdString() + " " + axisTopText(4.83).toStdString(), "5 4,8");
    QLocale::setDefault(before);
}

TEST(ChartText, TellsTheChartInWords) {
    const QStringList times{QStringLiteral("09:00"), QStringLiteral("10:00")};
    const struct {
        StatusMenuChart chart;
        std::string words;
    } cases[] = {
        {{}, "No data yet"},
        {{{-1}, {}, {}, {}}, "Latest 0.00 kW, peak 0.00 kW, 1 sample"},
        {{{1, 4, 2}, {}, times, {}}, "Latest 2.00 kW, peak 4.00 kW at 10:00, 3 samples"},
    };
    for (const auto& [chart, words] : cases) {
        EXPECT_EQ(chartDescription(chart).toStdString(), words);
    }
}
