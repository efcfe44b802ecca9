#include "ControllerBench.h"

#include <Varnel/OutputWindowSource.h>

#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

class OutputWindowSourceTest : public testing::Test, protected Testing::ControllerBench {
protected:
    std::shared_ptr<OutputSource> source() const { return item->outputSource.lock(); }

    int arrivals = 0;
};

TEST_F(OutputWindowSourceTest, TheCurveStandsBesideWhatIsMeasuredAndIsAskedForOncePerInterval) {
    launchConnected();
    const auto measured = controller->todayOutput().samples();
    EXPECT_TRUE(source()->requestServiceCurve([this] { ++arrivals; }));
    ASSERT_TRUE(Testing::waitUntil([&] { return arrivals == 1; }));
    const int asked = requestsTo("ByDay");
    const OutputOfToday today = source()->today();
    EXPECT_EQ(today.ofService.front().at, Calendar::startOfDay(time.now()));
    EXPECT_NEAR((today.ofService.back().at - time.now()).count(), 0, 300);
    EXPECT_EQ(today.readings.size(), measured.size());
    EXPECT_EQ(today.interval, Seconds(300));
    EXPECT_EQ(source()->storedReadings().size(), measured.size()) << "nothing of the curve is stored";
    EXPECT_EQ(controller->presentation().outputChartValues.size(), measured.size()) << "nor in the menu";

    EXPECT_TRUE(source()->requestServiceCurve([this] { ++arrivals; })) << "the next opening has what there is";
    Testing::settle();
    EXPECT_EQ(requestsTo("ByDay"), asked);
    failRequests(Simulator::FaultKind::status, 500, "*ByDay*");
    const std::optional<QString> error = controller->values().errorMessage;
    time.jumpTo(time.now() + Seconds(301));
    EXPECT_TRUE(source()->requestServiceCurve([this] { ++arrivals; }));
    EXPECT_TRUE(Testing::waitUntil([&] { return requestsTo("ByDay") > asked; }));
    Testing::settle();
    EXPECT_EQ(controller->values().errorMessage, error) << "a failure is silent";
    EXPECT_FALSE(source()->today().ofService.empty()) << "what had come stays";
}

TEST_F(OutputWindowSourceTest, NothingOfAnotherAccountOrDayIsLeft) {
    launchConnected();
    EXPECT_TRUE(source()->requestServiceCurve([this] { ++arrivals; }));
    ASSERT_TRUE(Testing::waitUntil([&] { return arrivals == 1; }));
    const int revision = source()->today().daysRevision;
    controller->signOut(false);
    EXPECT_FALSE(source()->requestServiceCurve({})) << "nobody can be asked";
    EXPECT_TRUE(source()->today().ofService.empty());
    EXPECT_TRUE(source()->storedReadings().empty());
    EXPECT_NE(source()->today().daysRevision, revision);
    const std::shared_ptr<OutputSource> kept = source();
    launch();
    EXPECT_EQ(kept->windowGeometry(), QByteArray());
    kept->keepWindowGeometry("place");
    EXPECT_EQ(source()->windowGeometry(), QByteArray("place"));
}

TEST(OutputWindowSource, SpreadsACurveOverTheDayByItsTimesElseEvenly) {
    const auto day = Timestamp::fromDateTime(QDateTime(QDate(2026, 6, 21), QTime(15, 0)));
    const struct {
        const char* name;
        SEMSDaySeries series;
        const char* second; ///< the time of the second point
    } rows[] = {
        {"times", {{1, 2}, {420, 435}}, "07:15"},
        {"none: every five minutes", {{1, 2, 3}, {}}, "00:05"},
        {"closer", {std::vector<double>(1440, 1.0), {}}, "00:01"},
        {"the end of the day", {{1, 2}, {0, 1440}}, "00:00"},
    };
    for (const auto& [name, series, second] : rows) {
        const OutputCurve points = pointsOnDay(series, day);
        ASSERT_EQ(points.size(), series.kilowatts.size()) << name;
        EXPECT_EQ(points[1].at.toDateTime().toString(QStringLiteral("HH:mm")), QLatin1String(second)) << name;
    }
}

} // namespace
} // namespace Varnel
