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

const QString folder = QStringLiteral(VARNEL_REPLIES_FOLDER);
const QString expectedSuffix = QStringLiteral(".expected.json");

JSON contentOf(const QString& fileName) {
    QFile file(folder + QLatin1Char('/') + fileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << fileName.toStdString();
    return parseJSON(file.readAll()).value();
}

JSON toJSON(const std::optional<double>& number) {
    return number ? JSON(*number) : JSON();
}

JSON toJSON(const std::vector<PowerStation>& stations) {
    JSON list = JSON::array();
    for (const PowerStation& station : stations) {
        JSON entry = {{"id", toUtf8(station.id)}};
        if (station.name) {
            entry["name"] = toUtf8(*station.name);
        }
        if (station.capacityKW) {
            entry["capacityKW"] = *station.capacityKW;
        }
        list.push_back(entry);
    }
    return list;
}

/// Everything that is read from a reply; `day` is of use to the replies of day calls alone.
JSON readingOf(const JSON& reply, const QString& day) {
    const Result<double> power = SEMSJSONSearch::extractInstantPowerKW(reply);
    const auto series = SEMSJSONSearch::extractTodayPowerSeriesKW(reply);
    return {{"day", toUtf8(day)},
            {"kilowatts", power ? JSON(*power) : JSON()},
            {"todayOutputKWh", toJSON(SEMSJSONSearch::extractTodayOutputKWh(reply))},
            {"dayOutputKWh", toJSON(SEMSJSONSearch::extractDayOutputKWh(reply, QDate::fromString(day, Qt::ISODate)))},
            {"seriesKW", series ? JSON(*series) : JSON()},
            {"stations", toJSON(SEMSJSONSearch::extractStations(reply))}};
}

/// Numbers match to nine digits: what a file holds in decimal went through a division here.
bool matches(const JSON& read, const JSON& expected) {
    if (read.is_number() && expected.is_number()) {
        return std::abs(read.get<double>() - expected.get<double>()) < 1e-9;
    }
    if (!read.is_array() || !expected.is_array()) {
        return read == expected;
    }
    return std::equal(read.begin(), read.end(), expected.begin(), expected.end(), matches);
}

TEST(SEMSReplies, ReadAsExpected) {
    const QStringList names = QDir(folder).entryList({QLatin1Char('*') + expectedSuffix}, QDir::Files, QDir::Name);
    ASSERT_FALSE(names.isEmpty()) << folder.toStdString();
    for (const QString& name : names) {
        const JSON expected = contentOf(name);
        const JSON reply = contentOf(name.chopped(expectedSuffix.size()) + QStringLiteral(".json"));
        const JSON reading = readingOf(reply, textOf(expected.value("day", JSON())));
        for (const auto& [key, value] : expected.items()) {
            const JSON read = reading.value(key, JSON("no such value"));
            EXPECT_TRUE(matches(read, value))
                << name.toStdString() << ": " << key << " is " << read << ", not " << value;
        }
    }
}

} // namespace
} // namespace Varnel
