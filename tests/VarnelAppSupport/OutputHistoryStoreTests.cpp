#include <VarnelAppSupport/OutputHistoryStore.h>

#include "HistoryFolder.h"

#include <VarnelShared/Calendar.h>

#include <gmock/gmock.h>

#include <cmath>
#include <ctime>
#include <limits>

namespace Varnel {
namespace {

using Testing::contentOf;
using testing::ElementsAre;
using Testing::HistoryFolder;

const QString account = QStringLiteral("me@example.org");
const QString station = QStringLiteral("S1");

Timestamp local(int year, int month, int day, int hour = 0, int minute = 0) {
    return Timestamp::fromDateTime(QDateTime(QDate(year, month, day), QTime(hour, minute)));
}

OutputHistorySnapshot snapshotOf(Timestamp dayStart, double kilowatts, const QString& stationID = station) {
    return {dayStart, account, stationID, {{dayStart + Seconds(36000), kilowatts}}};
}

class OutputHistoryStoreTest : public testing::Test {
protected:
    std::vector<Timestamp> storedDays() {
        std::vector<Timestamp> days;
        for (const OutputHistorySnapshot& snapshot : store.loadAllSnapshots(account, station)) {
            days.push_back(snapshot.dayStart);
        }
        return days;
    }

    HistoryFolder folder;
    OutputHistoryStore store = folder.store();
};

TEST_F(OutputHistoryStoreTest, WritesTheFormatByteForByteIntoAFileOfTheUserAlone) {
    EXPECT_FALSE(QFile::exists(store.filePath()));
    const Timestamp day{807919200}; // 2026-08-09 in Berlin
    const std::vector<OutputHistorySample> samples = {{Timestamp{807926400.123456}, 0.1 + 0.2},
                                                      {Timestamp{807926700}, 3},
                                                      {Timestamp{807926400.5}, 0.00001},
                                                      {Timestamp{807926400.25}, -0.0}};
    store.saveSnapshot({day, QStringLiteral(" a\"ä/ "), QStringLiteral("S1"), samples}, day);
    store.saveSnapshot({Timestamp{day.secondsSinceReferenceDate - 86400}, account, QStringLiteral("S2"), {}}, day);
    EXPECT_EQ(
        folder.content().toStdString(),
        R"({"snapshots":[{"account":" a\"ä/ ","dayStart":807919200,"samples":[)"
        R"({"kilowatts":0.30000000000000004,"timestamp":807926400.123456},{"kilowatts":3,"timestamp":807926700},)"
        R"({"kilowatts":1e-05,"timestamp":807926400.5},{"kilowatts":-0,"timestamp":807926400.25}],"stationID":"S1"},)"
        R"({"account":"me@example.org","dayStart":807832800,"samples":[],"stationID":"S2"}],"version":1})");

    const QFile::Permissions user = QFile::ReadUser | QFile::WriteUser | QFile::ReadOwner | QFile::WriteOwner;
    EXPECT_EQ(QFile::permissions(store.filePath()), user);
    for (const QString& made : {folder.dataFolder(), QFileInfo(store.filePath()).absolutePath()}) {
        EXPECT_EQ(QFile::permissions(made), user | QFile::ExeUser | QFile::ExeOwner) << qPrintable(made);
    }
}

TEST_F(OutputHistoryStoreTest, OtherDaysComeBackByteForByteAfterASave) {
    const QByteArray oldDay =
        R"({"account":"me@example.org","dayStart":807832800,"samples":[{"kilowatts":0.30000000000000004,)"
        R"("timestamp":807926400.123456},{"kilowatts":-0,"timestamp":807926400},)"
        R"({"kilowatts":5e-324,"timestamp":-1.7976931348623157e+308},{"kilowatts":0.0001,"timestamp":9007199254740993.5},)"
        R"({"kilowatts":1e+23,"timestamp":2.2250738585072014e-308}],"stationID":"S2"})";
    // The third of these is no double: it is rounded to the next one.
    const QByteArray rewritten = QByteArray(oldDay).replace("9007199254740993.5", "9007199254740994");
    folder.put(R"({"version":1,"snapshots":[)" + oldDay + "]}");
    store.saveSnapshot({Timestamp{807919200}, account, station, {}}, Timestamp{807919200});
    EXPECT_EQ(folder.content(),
              R"({"snapshots":[{"account":"me@example.org","dayStart":807919200,"samples":[],"stationID":"S1"},)" +
                  rewritten + R"(],"version":1})");
}

TEST_F(OutputHistoryStoreTest, ReadsWhatIsAHistoryAndNothingElse) {
    const QByteArray sample = R"({"kilowatts":1,"timestamp":2})";
    const QByteArray bare = R"({"account":"me@example.org","dayStart":807919200,"samples":[)" + sample +
                            R"(],"stationID":"S1","extra":[{}]})";
    const auto archive = [](const QByteArray& snapshots) {
        return R"({"snapshots":)" + snapshots + R"(,"version":7})";
    };
    const struct {
        const char* name;
        QByteArray content;
        std::size_t snapshots;
    } files[] = {
        {"archive of any version, with unknown keys", archive("[" + bare + "," + bare + "]"), 2},
        {"bare snapshot", bare, 1},
        {"empty", "", 0},
        {"no JSON", "\x89PNG\r\n", 0},
        {"cut off", archive("[" + bare + "]").chopped(1), 0},
        {"array", "[" + bare + "]", 0},
        {"text as version", R"({"snapshots":[)" + bare + R"(],"version":"1"})", 0},
        {"no version", R"({"snapshots":[)" + bare + "]}", 0},
        {"one snapshot of many without a key", archive("[" + bare + R"(,{"account":"a"}])"), 0},
        {"text as instant", QByteArray(bare).replace("807919200", "\"807919200\""), 0},
        {"boolean as power", QByteArray(bare).replace("\"kilowatts\":1", "\"kilowatts\":true"), 0},
        {"number as station", QByteArray(bare).replace("\"S1\"", "1"), 0},
        {"object as samples", QByteArray(bare).replace("[" + sample + "]", "{}"), 0},
        {"number out of range", QByteArray(bare).replace("807919200", "1e999"), 0},
    };
    for (const auto& file : files) {
        folder.put(file.content);
        EXPECT_EQ(store.loadAllSnapshots(account, station).size(), file.snapshots) << file.name;
        EXPECT_EQ(folder.content(), file.content) << file.name << " was touched by reading";

        const Testing::RecordedLog log;
        const Timestamp newDay{807919200 + 86400};
        store.saveSnapshot(snapshotOf(newDay, 2), newDay);
        EXPECT_EQ(store.loadAllSnapshots(account, station).size(), file.snapshots + 1) << file.name;
        EXPECT_TRUE(folder.content().endsWith(R"(],"version":1})")) << file.name;

        const bool isKept = file.snapshots == 0 && !file.content.isEmpty();
        EXPECT_EQ(contentOf(folder.keptFile()), isKept ? file.content : QByteArray()) << file.name;
        EXPECT_EQ(log.lines.size(), isKept ? 1 : 0) << file.name;
        store.clear();
        EXPECT_FALSE(QFile::exists(folder.keptFile()));
    }
}

TEST_F(OutputHistoryStoreTest, FindsASnapshotByItsCalendarDayInTheZoneOfTheMoment) {
    const struct {
        const char* name;
        Timestamp stored;
        Timestamp asked;
        bool found;
    } rows[] = {
        {"both ends of a day", local(2026, 6, 1, 0, 1), local(2026, 6, 1, 23, 59), true},
        {"across midnight", local(2026, 6, 1, 23, 59), local(2026, 6, 2, 0, 1), false},
        {"the day of 23 hours", local(2026, 3, 29), local(2026, 3, 29, 23, 59), true},
        {"after the day of 23 hours", local(2026, 3, 29), local(2026, 3, 30, 0, 1), false},
        {"the day of 25 hours", local(2026, 10, 25), local(2026, 10, 25, 23, 59), true},
        {"after the day of 25 hours", local(2026, 10, 25), local(2026, 10, 26, 0, 1), false},
    };
    for (const auto& row : rows) {
        store.clear();
        store.saveSnapshot(snapshotOf(row.stored, 1), row.stored);
        EXPECT_EQ(store.loadSnapshot(row.asked, account, station).has_value(), row.found) << row.name;
        store.saveSnapshot(snapshotOf(row.asked, 2), row.asked);
        EXPECT_EQ(storedDays().size(), row.found ? 1 : 2) << row.name;
    }

    store.clear();
    const OutputHistorySnapshot june2 = snapshotOf(local(2026, 6, 2), 1);
    store.saveSnapshot(june2, june2.dayStart);
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "America/New_York"); // where midnight in Berlin belongs to the day before
    tzset();
    EXPECT_EQ(store.loadSnapshot(local(2026, 6, 2), account, station), std::nullopt);
    EXPECT_EQ(store.loadSnapshot(local(2026, 6, 1), account, station), june2);
    qputenv("TZ", zone);
    tzset();
}

TEST_F(OutputHistoryStoreTest, KeepsAccountsAndStationsApartAndTrimsOnlyWhatIsAskedFor) {
    const Timestamp day = local(2026, 6, 1);
    const QString other = QStringLiteral("S2");
    store.saveSnapshot(snapshotOf(day, 1), day);
    store.saveSnapshot(snapshotOf(day, 2, other), day);
    store.saveSnapshot(snapshotOf(day, 3), day);
    EXPECT_EQ(store.loadSnapshot(day, QStringLiteral(" me@example.org\n"), QStringLiteral("\tS1 ")),
              snapshotOf(day, 3));
    EXPECT_EQ(store.loadSnapshot(day, account, other), snapshotOf(day, 2, other));
    EXPECT_EQ(store.loadSnapshot(day, account.toUpper(), station), std::nullopt);

    store.saveSnapshot(snapshotOf(day, 4, QStringLiteral(" S1")), day);
    EXPECT_EQ(store.loadSnapshot(day, account, QStringLiteral(" S1")), snapshotOf(day, 3));
    // Snapshots of one day stay in the order of their saves.
    EXPECT_LT(folder.content().indexOf("S2"), folder.content().indexOf("\"S1"));
    EXPECT_LT(folder.content().indexOf("\"S1"), folder.content().indexOf("\" S1"));
}

TEST_F(OutputHistoryStoreTest, PrunesByCalendarDaysAndKeepsTheNewestFirst) {
    const Timestamp now = local(2026, 4, 10, 12); // the clocks changed within the last 30 days
    const Timestamp first = local(2026, 3, 11);
    for (const Timestamp day : {first, local(2026, 3, 10), local(2026, 4, 9), local(2026, 4, 10)}) {
        store.saveSnapshot(snapshotOf(day, 1), now);
    }
    EXPECT_THAT(storedDays(), ElementsAre(local(2026, 4, 10), local(2026, 4, 9), first));

    OutputHistoryStore shortLived = folder.store(-3); // counts as 1
    shortLived.saveSnapshot(snapshotOf(local(2026, 4, 10), 2), now);
    EXPECT_EQ(storedDays().size(), 2);
    shortLived.saveSnapshot(snapshotOf(local(2026, 4, 8), 2), local(2026, 6, 1));
    EXPECT_FALSE(QFile::exists(store.filePath()));

    const Timestamp never{std::numeric_limits<double>::quiet_NaN()};
    store.saveSnapshot(snapshotOf(first, 1), never);
    EXPECT_EQ(storedDays().size(), 1) << "without a date nothing is pruned";
}

TEST_F(OutputHistoryStoreTest, AClockFarAheadCostsNoHistoryWithoutAKeptFile) {
    const Timestamp today = local(2026, 6, 10);
    for (int ago = 9; ago >= 0; --ago) {
        const Timestamp day = Calendar::addingDays(today, -ago).value();
        store.saveSnapshot(snapshotOf(day, 1), day);
    }
    const auto saveAt = [this](Timestamp day) { store.saveSnapshot(snapshotOf(day, 1), day); };
    saveAt(local(2026, 5, 31)); // a clock that is behind
    EXPECT_EQ(storedDays().size(), 11);
    saveAt(local(2026, 7, 2));
    EXPECT_EQ(storedDays().size(), 10) << "two days gone, one added";
    EXPECT_FALSE(QFile::exists(folder.keptFile()));

    const QByteArray full = folder.content();
    const Testing::RecordedLog log;
    saveAt(local(2036, 6, 10));
    EXPECT_EQ(storedDays().size(), 1);
    EXPECT_EQ(contentOf(folder.keptFile()), full);
    saveAt(today);
    EXPECT_EQ(contentOf(folder.keptFile()), full) << "the newest one stays until there is a newer one";
    EXPECT_EQ(log.lines.size(), 1);
}

TEST_F(OutputHistoryStoreTest, RemovesOneDayWithoutPruningAndDeletesAFileWithNothingLeft) {
    const Timestamp days[] = {local(2020, 1, 1), local(2020, 1, 2)};
    for (const Timestamp day : days) {
        store.saveSnapshot(snapshotOf(day, 1), day);
    }
    store.removeSnapshot(local(2020, 1, 2, 15), account + QLatin1Char(' '), station);
    EXPECT_THAT(storedDays(), ElementsAre(days[0]));
    store.removeSnapshot(days[0], account, station);
    EXPECT_FALSE(QFile::exists(store.filePath()));
    store.clear();
}

TEST_F(OutputHistoryStoreTest, ANumberThatIsNotFiniteLeavesTheOldFile) {
    const Timestamp day = local(2026, 6, 1);
    store.saveSnapshot(snapshotOf(day, 1), day);
    const QByteArray before = folder.content();
    for (const double wild : {std::nan(""), -std::numeric_limits<double>::infinity()}) {
        store.saveSnapshot(snapshotOf(day, wild), day);
        store.saveSnapshot(snapshotOf(Timestamp{wild}, 1), day);
        store.saveSnapshot({day, account, station, {{Timestamp{wild}, 1}}}, day);
    }
    EXPECT_EQ(folder.content(), before);
}

} // namespace
} // namespace Varnel
