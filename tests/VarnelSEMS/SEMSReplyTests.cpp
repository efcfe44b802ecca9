#include <VarnelSEMS/SEMSJSONSearch.h>

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Every reply of the replies folder against the reading beside it: REPLY.json and REPLY.expected.json. An expectation
// names only what it is about; null stands for "nothing found".

namespace Varnel {
namespace {

const QString folder = QStringLiteral(VARNEL_TESTS_FOLDER "/replies");
const QString expectedSuffix = QStringLiteral(".expected.json");

JSON contentOf(const QString& fileName) {
    QFile file(folder + QLatin1Char('/') + fileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << fileName.toStdString();
    return parseJSON(file.readAll()).value();
}

/// Everything that is read from a reply; `day` is of use to the replies of day calls alone.
JSON readingOf(const JSON& reply, const QString& day) {
    const auto orNull = [](const auto& found) { return found ? JSON(*found) : JSON(); };
    JSON stations = JSON::array();
    for (const PowerStation& station : SEMSJSONSearch::extractStations(reply)) {
        JSON& entry = stations.emplace_back(JSON{{"id", toUtf8(station.id)}});
        if (station.name) {
            entry["name"] = toUtf8(*station.name);
        }
        if (station.capacityKW) {
            entry["capacityKW"] = *station.capacityKW;
        }
    }
    auto series = SEMSJSONSearch::extractTodayPowerSeriesKW(reply);
    if (series) {
        // A division by 1000 leaves digits of its own behind.
        std::for_each(series->begin(), series->end(), [](double& power) { power = std::round(power * 1e6) / 1e6; });
    }
    const QDate date = QDate::fromString(day, Qt::ISODate);
    return {{"day", toUtf8(day)},
            {"kilowatts", orNull(SEMSJSONSearch::extractInstantPowerKW(reply))},
            {"todayOutputKWh", orNull(SEMSJSONSearch::extractTodayOutputKWh(reply))},
            {"dayOutputKWh", orNull(SEMSJSONSearch::extractDayOutputKWh(reply, date))},
            {"seriesKW", orNull(series)},
            {"stations", stations}};
}

TEST(SEMSReplies, ReadAsExpected) {
    const QStringList names = QDir(folder).entryList({QLatin1Char('*') + expectedSuffix}, QDir::Files, QDir::Name);
    ASSERT_FALSE(names.isEmpty()) << folder.toStdString();
    for (const QString& name : names) {
        const JSON expected = contentOf(name);
        const JSON reply = contentOf(name.chopped(expectedSuffix.size()) + QStringLiteral(".json"));
        const JSON reading = readingOf(reply, textOf(expected.value("day", JSON())));
        for (const auto& [key, value] : expected.items()) {
            EXPECT_EQ(reading.value(key, JSON("no such value")), value) << name.toStdString() << ": " << key;
        }
    }
}

} // namespace
} // namespace Varnel
