#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace Varnel {
namespace {

/// Sets the process's zone for one test.
class Calendar : public testing::Test {
protected:
    static void setZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    void SetUp() override { setZone("Europe/Berlin"); }
    void TearDown() override { setZone("Europe/Berlin"); }

    static Timestamp local(int month, int day, int hour, int minute) {
        return Timestamp::fromDateTime(QDateTime(QDate(2026, month, day), QTime(hour, minute)));
    }
};

TEST_F(Calendar, TheDaysOfTheClockChangesHave23And25Hours) {
    const Timestamp spring = Varnel::Calendar::startOfDay(local(3, 29, 15, 0));
    const Timestamp autumn = Varnel::Calendar::startOfDay(local(10, 25, 15, 0));
    EXPECT_EQ(spring, local(3, 29, 0, 0));
    EXPECT_EQ((Varnel::Calendar::startOfNextDay(spring).value() - spring).count(), 23 * 3600.0);
    EXPECT_EQ((Varnel::Calendar::startOfNextDay(autumn).value() - autumn).count(), 25 * 3600.0);
    EXPECT_EQ(Varnel::Calendar::addingDays(local(3, 28, 12, 0), 1), local(3, 29, 12, 0));
    EXPECT_EQ(Varnel::Calendar::addingDays(local(3, 28, 12, 0), -30), local(2, 26, 12, 0));
}

TEST_F(Calendar, ADayThatSkipsMidnightStartsAtOne) {
    setZone("America/Asuncion"); // clocks went from 00:00 to 01:00 on 2023-10-01
    const auto noon = Timestamp::fromDateTime(QDateTime(QDate(2023, 10, 1), QTime(12, 0)));
    EXPECT_EQ(Varnel::Calendar::startOfDay(noon).toDateTime().time(), QTime(1, 0));
}

TEST_F(Calendar, AChangeOfTheZoneTakesEffectAtOnce) {
    const Timestamp evening = local(6, 1, 23, 30);
    const Timestamp nextMorning = local(6, 2, 0, 30);
    EXPECT_FALSE(Varnel::Calendar::isSameDay(evening, nextMorning));
    setZone("Asia/Tokyo");
    EXPECT_TRUE(Varnel::Calendar::isSameDay(evening, nextMorning));
}

TEST_F(Calendar, AnInstantOutsideTheCalendarBelongsToNoDay) {
    for (const double seconds : {std::nan(""), 1e300, -1e300, std::numeric_limits<double>::infinity()}) {
        const Timestamp wild{seconds};
        EXPECT_FALSE(wild.toDateTime().isValid());
        EXPECT_FALSE(Varnel::Calendar::isSameDay(wild, wild));
        EXPECT_FALSE(Varnel::Calendar::addingDays(wild, 1).has_value());
        EXPECT_FALSE(Varnel::Calendar::startOfNextDay(wild).has_value());
    }
}

TEST_F(Calendar, TheReferenceDateIsTheFirstOfJanuary2001) {
    EXPECT_EQ(Timestamp{0}.toDateTime().toUTC(), QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
}

} // namespace
} // namespace Varnel
