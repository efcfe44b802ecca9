#include "../Support/HandTurnedTime.h"

#include <Varnel/TodayOutput.h>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cstdlib>
#include <ctime>

namespace Varnel {
namespace {

using Testing::june;

std::vector<double> kilowatts(const TodayOutput& today) {
    std::vector<double> values;
    for (const OutputSample& sample : today.samples()) {
        values.push_back(sample.kilowatts);
    }
    return values;
}

class TodayOutputTest : public testing::Test {
protected:
    QTemporaryDir folder;
    OutputHistoryStore history{folder.path(), QStringLiteral("com.varnel.menubar")};
    Testing::HandTurnedTime clock;
    TodayOutput today{history, clock};
};

TEST_F(TodayOutputTest, ReadingsThatArriveTogetherLeaveOneSample) {
    today.record(1.0, june(1, 9, 0));
    today.record(2.0, june(1, 9, 0, 0.4));
    today.record(3.0, june(1, 9, 0, -0.3)); // the clock was set back a little
    today.record(-0.2, june(1, 9, 0, 0.7)); // a whole second after the last one
    EXPECT_EQ(kilowatts(today), (std::vector<double>{3.0, 0.0}));
    EXPECT_EQ(today.samples().front().timestamp, june(1, 9, 0, -0.3));
}

TEST_F(TodayOutputTest, KeepsTheNewest1440) {
    for (int i = 0; i <= 1440; ++i) {
        today.record(i, june(1, 0, 0, i * 30.0));
    }
    ASSERT_EQ(today.samples().size(), 1440U);
    EXPECT_EQ(today.samples().front().kilowatts, 1.0);
    history.saveSnapshot({june(1, 0, 0), QStringLiteral("me"), QStringLiteral("s"),
                          std::vector<OutputSample>(2000, OutputSample{june(1, 1, 0), 4.0})},
                         clock.now());
    today.setOwner(QStringLiteral(" me "), QStringLiteral("s"));
    today.restore();
    EXPECT_EQ(today.samples().size(), 1440U);
}

TEST_F(TodayOutputTest, APowerThatNoHouseHasIsNotTakenFromTheFile) {
    history.saveSnapshot(
        {june(1, 0, 0), QStringLiteral("me"), QStringLiteral("s"), {{june(1, 9, 0), 1e308}, {june(1, 9, 5), 2.0}}},
        clock.now());
    today.setOwner(QStringLiteral("me"), QStringLiteral("s"));
    today.restore();
    EXPECT_EQ(kilowatts(today), std::vector<double>{2.0});
}

TEST_F(TodayOutputTest, AChangeOfTheZoneKeepsWhatIsStillToday) {
    today.record(1.0, june(1, 0, 30));
    today.record(2.0, june(1, 9, 0));
    const Timestamp now = june(1, 10, 0);
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/London"); // the first sample lies in its yesterday
    ::tzset();
    today.rollOver(now);
    EXPECT_EQ(kilowatts(today), std::vector<double>{2.0});
    qputenv("TZ", zone);
    ::tzset();
}

TEST_F(TodayOutputTest, TheDayOfAClockChangeIsOneDay) {
    const auto beforeTheChange = Timestamp::fromDateTime(QDateTime(QDate(2026, 10, 25), QTime(0, 30)));
    for (int hour = 0; hour < 24; ++hour) {
        today.record(1.0, beforeTheChange + Seconds(hour * 3600.0));
    }
    EXPECT_EQ(today.samples().size(), 24U); // 25 hours long, and none of them rolled over
    today.record(1.0, beforeTheChange + Seconds(24.5 * 3600.0));
    EXPECT_EQ(today.samples().size(), 1U);
}

} // namespace
} // namespace Varnel
