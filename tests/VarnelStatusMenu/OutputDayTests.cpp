#include <VarnelStatusMenu/Window/DayAxis.h>
#include <VarnelStatusMenu/Window/DayText.h>
#include <VarnelStatusMenu/Window/DayWalk.h>

#include <VarnelShared/Calendar.h>

#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Varnel;

namespace {

const QDate day(2026, 6, 21);
constexpr Seconds fiveMinutes{300};

Timestamp at(const QString& time, QDate date = day) {
    return Timestamp::fromDateTime(QDateTime(date, QTime::fromString(time, QStringLiteral("H:mm"))));
}

/// "8:00=1 8:05=2.5", in kW.
OutputCurve curve(const char* text, QDate date = day) {
    OutputCurve points;
    for (const QString& point : QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts)) {
        points.push_back({at(point.section(u'=', 0, 0), date), point.section(u'=', 1).toDouble()});
    }
    return points;
}

/// The pieces in the same form, between bars.
std::string textOf(const std::vector<OutputCurve>& curves) {
    QStringList pieces;
    for (const OutputCurve& points : curves) {
        QStringList texts;
        for (const OutputPoint& point : points) {
            texts << point.at.toDateTime().toString(QStringLiteral("H:mm=")) + QString::number(point.kilowatts);
        }
        pieces << texts.join(u' ');
    }
    return pieces.join(QStringLiteral(" | ")).toStdString();
}

DrawnDay drawn(const char* readings, const char* ofService = "", const char* now = "23:59") {
    return drawnDay(curve(readings), curve(ofService), fiveMinutes, at(QStringLiteral("0:00")),
                    at(QString::fromLatin1(now)));
}

std::string timesOf(const std::vector<Timestamp>& instants) {
    QStringList times;
    for (const Timestamp instant : instants) {
        times << instant.toDateTime().toString(QStringLiteral("H:mm"));
    }
    return times.join(u' ').toStdString();
}

} // namespace

TEST(OutputDay, BreaksTheCurveWhereMoreThanTwoIntervalsAreMissing) {
    const struct {
        const char* name;
        const char* readings;
        const char* pieces;
    } rows[] = {
        {"nothing", "", ""},
        {"lone reading", "8:00=1", "8:00=1"},
        {"two intervals are none", "8:00=1 8:10=2", "8:00=1 8:10=2"},
        {"more are a gap", "8:00=1 8:05=1 8:10=1 8:21=2", "8:00=1 8:05=1 8:10=1 | 8:21=2"},
        {"a day that was polled every half hour", "8:00=1 8:30=2 9:00=3 10:00=3 11:05=1",
         "8:00=1 8:30=2 9:00=3 10:00=3 | 11:05=1"},
        {"readings asked for by hand", "8:00=1 8:01=1 8:02=1 8:03=1 8:12=1", "8:00=1 8:01=1 8:02=1 8:03=1 8:12=1"},
        {"nobody polls every eight hours", "8:00=1 16:00=2", "8:00=1 | 16:00=2"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(textOf(drawn(row.readings).measured), row.pieces) << row.name;
    }
}

TEST(OutputDay, FillsGapsAloneFromTheServicesCurve) {
    const struct {
        const char* name;
        const char* readings;
        const char* ofService;
        const char* filled;
    } rows[] = {
        {"the morning before the start, without the night", "13:00=3 13:05=3",
         "3:00=0 4:00=0 12:45=0 12:50=1 12:55=2 13:00=9 13:05=9", "12:45=0 12:50=1 12:55=2 13:00=3"},
        {"between readings", "8:00=1 8:05=1 8:30=2 8:35=2", "8:00=7 8:10=1 8:15=1 8:20=1 8:25=2 8:35=7",
         "8:05=1 8:10=1 8:15=1 8:20=1 8:25=2 8:30=2"},
        {"not where readings are near enough", "8:00=1 8:10=2", "8:05=9", ""},
        {"a gap of its own stays one", "8:00=1 8:05=1 12:00=2", "10:00=3 10:05=4", "10:00=3 10:05=4"},
        {"after the last reading, but not the future", "8:00=1 8:05=1", "8:10=1 8:15=2 15:00=1 15:01=1 15:05=1",
         "8:05=1 8:10=1 8:15=2 | 15:00=1 15:01=1"},
        {"no readings at all", "", "8:00=1 8:05=2", "8:00=1 8:05=2"},
        {"a service that knows nothing", "13:00=3 13:05=3", "8:00=0 9:00=0", ""},
    };
    for (const auto& row : rows) {
        const DrawnDay filled = drawn(row.readings, row.ofService, "15:02");
        EXPECT_EQ(textOf(filled.filled), row.filled) << row.name;
        EXPECT_EQ(filled.measured, drawn(row.readings).measured) << row.name << ": what was measured stays";
    }
}

TEST(OutputDay, CountsEnergyOutsideGapsAndFindsTheEarliestPeak) {
    const DrawnDay filled = drawn("8:00=1 8:10=3 12:00=6 12:10=6", "7:50=1 7:55=1", "13:00");
    EXPECT_NEAR(energyKWh(filled.measured), (2.0 + 6.0) / 6, 1e-9);
    EXPECT_NEAR(energyKWh(filled.filled), 1.0 / 6, 1e-9);
    EXPECT_EQ(peakOf(filled)->at, at(QStringLiteral("12:00")));
    EXPECT_FALSE(peakOf(DrawnDay()));
    EXPECT_EQ(energyText(filled, std::nullopt).toStdString(), "Energy under the curve: 1.50 kWh");
    EXPECT_EQ(energyText(filled, 7.25).toStdString(), "Energy: 7.25 kWh");
}

TEST(OutputDay, SortsAHistoryIntoDaysAndLeavesOutWhatCannotBeDrawn) {
    const double nan = std::nan("");
    OutputCurve stored = curve("12:00=2 0:00=0.5", day);
    const OutputCurve before = curve("23:59=-3", day.addDays(-1));
    stored.insert(stored.end(), before.begin(), before.end());
    for (const OutputPoint bad : {OutputPoint{at(QStringLiteral("1:00")), nan},
                                  {at(QStringLiteral("1:00")), 2e6},
                                  {{nan}, 1},
                                  {{1e300}, 1},
                                  {at(QStringLiteral("12:00")), 4}}) {
        stored.push_back(bad); // the last one: a second value of one instant
    }
    const std::vector<OutputDay> expected{{day.addDays(-1), curve("23:59=0", day.addDays(-1))},
                                          {day, curve("0:00=0.5 12:00=4")}};
    EXPECT_EQ(outputDays(stored), expected);
    EXPECT_TRUE(outputDays({}).empty());
}

TEST(OutputDay, KeepsTheHoursOfDaysOnWhichTheClockIsChanged) {
    const struct {
        QDate date;
        std::size_t readings; ///< one per hour
        const char* marks;
        const char* csv;
    } rows[] = {
        {{2026, 3, 29}, 23, "0:00 1:00 3:00 4:00", "2026-03-29T03:00:00+02:00,2,measured\n"},
        {{2026, 10, 25}, 25, "0:00 1:00 2:00 3:00", "2026-10-25T02:00:00+01:00,3,measured\n"},
    };
    for (const auto& [date, readings, marks, csv] : rows) {
        const Timestamp start = at(QStringLiteral("0:00"), date);
        OutputCurve hourly;
        for (int hour = 0; hour < 26; ++hour) {
            hourly.push_back({start + Seconds(hour * 3600.0), double(hour)});
        }
        const std::vector<OutputDay> days = outputDays(hourly);
        ASSERT_GE(days.size(), 2U);
        EXPECT_EQ(days.front().readings.size(), readings);
        EXPECT_EQ(timesOf(axisMarks({start, at(QStringLiteral("4:00"), date)}, 6)).substr(0, std::strlen(marks)),
                  marks);
        const DrawnDay whole = drawnDay(days.front().readings, {}, Seconds(3600), start, start);
        EXPECT_EQ(whole.measured.size(), 1U);
        EXPECT_TRUE(csvText(whole).contains(QString::fromLatin1(csv))) << csvText(whole).toStdString();
        EXPECT_NEAR(energyKWh(whole.measured), std::pow(double(readings) - 1, 2) / 2, 1e-9) << "true hours";
    }
}

TEST(OutputDay, WritesCSVWithTheSourceOfEachPointWhateverTheLocale) {
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(csvText(drawn("13:00=3.25 13:05=0.000012", "12:55=1500.5")).toStdString(),
              "time,kW,source\n"
              "2026-06-21T12:55:00+02:00,1500.5,service\n"
              "2026-06-21T13:00:00+02:00,3.25,measured\n"
              "2026-06-21T13:05:00+02:00,0.000012,measured\n");
    QLocale::setDefault(QLocale::c());
}

TEST(OutputDay, LabelsTheTimeAxisAtFullHoursAsRoomAllows) {
    const struct {
        const char* from;
        const char* to;
        int most;
        const char* marks;
    } rows[] = {
        {"5:20", "20:40", 8, "6:00 8:00 10:00 12:00 14:00 16:00 18:00 20:00"},
        {"5:20", "20:40", 4, "8:00 12:00 16:00 20:00"},
        {"5:20", "20:40", 1, "12:00"},
        {"13:02", "13:31", 8, "13:05 13:10 13:15 13:20 13:25 13:30"},
        {"13:00", "13:00", 8, "13:00"},
    };
    for (const auto& [from, to, most, marks] : rows) {
        const DayAxis axis{at(QString::fromLatin1(from)), at(QString::fromLatin1(to))};
        EXPECT_EQ(timesOf(axisMarks(axis, most)), marks) << from << "-" << to;
    }
    EXPECT_FALSE(axisOf(DrawnDay(), at(QStringLiteral("12:00"))));
    EXPECT_EQ(axisOf(drawn("8:00=1"), std::nullopt)->to, at(QStringLiteral("8:30")));
    EXPECT_EQ(axisOf(drawn("8:00=1"), at(QStringLiteral("12:00")))->to, at(QStringLiteral("12:00")));
}

TEST(DayWalk, GoesThroughTheDaysThatHaveReadings) {
    DayWalk walk;
    const auto days = [](std::initializer_list<int> ago) {
        std::vector<OutputDay> found;
        for (const int number : ago) {
            found.push_back({day.addDays(-number), {{at(QStringLiteral("8:00"), day.addDays(-number)), 1}}});
        }
        return found;
    };
    /// "<" back, ">" forth, "h" today; "2" becomes the shown day's distance from `day`.
    const auto play = [&walk](const char* steps) {
        for (const char step : std::string(steps)) {
            step == '<' ? walk.goBack() : step == '>' ? walk.goForth() : walk.goToToday();
        }
        return walk.shown().date.daysTo(day);
    };
    walk.setDays({}, day);
    EXPECT_EQ(play("<>"), 0);
    EXPECT_FALSE(walk.hasEarlier());
    walk.setDays(days({7, 0, 2, -1}), day);
    EXPECT_EQ(play(">"), 0) << "a day to come is not shown";
    EXPECT_EQ(play("<"), 2);
    EXPECT_EQ(play("<<<"), 7);
    EXPECT_FALSE(walk.hasEarlier());
    EXPECT_EQ(play(">"), 2);
    EXPECT_EQ(play("<h"), 0);
    walk.setDays(days({0, 2, 7}), day.addDays(1));
    EXPECT_EQ(walk.shown().date, day.addDays(1)) << "midnight: today goes on being shown";
    EXPECT_EQ(play("<"), 0);
    walk.setDays(days({0, 2}), day.addDays(1));
    EXPECT_EQ(play(""), 0) << "the shown day stays";
    walk.setDays(days({2}), day.addDays(1));
    EXPECT_TRUE(walk.isTodayShown()) << "signed out, or another station";
}
