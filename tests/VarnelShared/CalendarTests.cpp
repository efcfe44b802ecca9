#include <VarnelShared/Calendar.h>

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>

namespace Varnel {
namespace {

Timestamp local(int month, int day, int hour) {
    return Timestamp::fromDateTime(QDateTime(QDate(2026, month, day), QTime(hour, 0)));
}

TEST(Calendar, TheDaysOfTheClockChangesHave23And25Hours) {
    const Timestamp spring = Calendar::startOfDay(local(3, 29, 15));
    const Timestamp autumn = Calendar::startOfDay(local(10, 25, 15));
    EXPECT_EQ(spring, Timestamp{796431600}); // counted in UTC from the first of January 2001
    EXPECT_EQ((Calendar::startOfNextDay(spring).value() - spring).count(), 23 * 3600.0);
    EXPECT_EQ((Calendar::startOfNextDay(autumn).value() - autumn).count(), 25 * 3600.0);
    EXPECT_EQ(Calendar::addingDays(local(3, 28, 12), 1), local(3, 29, 12));
    EXPECT_EQ(Calendar::addingDays(local(3, 28, 12), -30), local(2, 26, 12));
}

TEST(Calendar, ADayThatSkipsMidnightStartsAtOne) {
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "America/Asuncion"); // clocks went from 00:00 to 01:00 on 2023-10-01
    tzset();
    const auto noon = Timestamp::fromDateTime(QDateTime(QDate(2023, 10, 1), QTime(12, 0)));
    EXPECT_EQ(Calendar::startOfDay(noon).toDateTime().time(), QTime(1, 0));
    qputenv("TZ", zone);
    tzset();
}

TEST(Calendar, AnInstantOutsideTheCalendarBelongsToNoDay) {
    for (const double seconds : {std::nan(""), 1e300, -1e300, std::numeric_limits<double>::infinity()}) {
        const Timestamp wild{seconds};
        EXPECT_FALSE(wild.toDateTime().isValid());
        EXPECT_FALSE(Calendar::isSameDay(wild, wild));
        EXPECT_FALSE(Calendar::addingDays(wild, 1).has_value());
        EXPECT_FALSE(Calendar::startOfNextDay(wild).has_value());
    }
}

} // namespace
} // namespace Varnel
