#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSReply.h>

#include "../Support/Files.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Varnel {
namespace {

const QDir folder(QStringLiteral(VARNEL_TESTS_FOLDER "/replies"));

JSON contentOf(const QString& fileName) {
    return parseJSON(Testing::contentOf(folder.filePath(fileName))).value();
}

/// Without the digits that a division by 1000 leaves behind; null for "nothing found".
template <typename Found>
JSON number(const Found& found) {
    return found ? JSON(std::round(*found * 1e9) / 1e9) : JSON();
}

JSON stationsOf(const JSON& reply) {
    JSON stations = JSON::array();
    for (const PowerStation& station : SEMSJSONSearch::extractStations(reply)) {
        JSON& entry = stations.emplace_back(JSON{{"id", toUtf8(station.id)}});
        if (station.name) {
            entry["name"] = toUtf8(*station.name);
        }
        if (station.capacityKW) {
            entry["capacityKW"] = number(station.capacityKW);
        }
    }
    return stations;
}

JSON failureOf(const JSON& reply) {
    const auto verdict = validateEnvelope(reply);
    return verdict ? JSON() : JSON(toUtf8(verdict.error().localizedDescription()));
}

/// Expects of each named value of a case what the search finds in the reply; a case names only what it is about.
void expectReading(const std::string& name, const JSON& expected, const JSON& reply) {
    JSON series;
    for (const double power : SEMSJSONSearch::extractTodayPowerSeriesKW(reply).value_or(std::vector<double>())) {
        series.push_back(number(std::optional(power)));
    }
    const QString day = textOf(expected.value("day", JSON()));
    const QDate date = QDate::fromString(day, Qt::ISODate);
    const JSON reading = {{"kilowatts", number(SEMSJSONSearch::extractInstantPowerKW(reply))},
                          {"todayOutputKWh", number(SEMSJSONSearch::extractTodayOutputKWh(reply))},
                          {"dayOutputKWh", number(SEMSJSONSearch::extractDayOutputKWh(reply, date))},
                          {"seriesKW", series},
                          {"stations", stationsOf(reply)},
                          {"failure", failureOf(reply)},
                          {"day", toUtf8(day)},
                          {"name", expected.value("name", JSON())},
                          {"reply", reply}};
    for (const auto& [key, value] : expected.items()) {
        EXPECT_EQ(reading.value(key, JSON("no such value")), value) << name << ": " << key;
    }
}

// REPLY.json is a whole reply and REPLY.expected.json what is read from it.
TEST(SEMSReplies, ReadAsExpected) {
    const QString suffix = QStringLiteral(".expected.json");
    const QStringList names = folder.entryList({QLatin1Char('*') + suffix}, QDir::Files);
    ASSERT_FALSE(names.isEmpty());
    for (const QString& name : names) {
        const JSON reply = contentOf(name.chopped(suffix.size()) + QStringLiteral(".json"));
        expectReading(name.toStdString(), contentOf(name), reply);
    }
}

// Every rule of the envelope and of the search with the smallest reply that shows it.
TEST(SEMSReplies, FollowTheRules) {
    for (const char* topic : {"envelope", "power", "energy", "series", "stations"}) {
        const JSON cases = contentOf(QStringLiteral("rules/%1.json").arg(QLatin1String(topic)));
        ASSERT_FALSE(cases.empty());
        for (const JSON& each : cases) {
            expectReading(topic + (": " + each.at("name").get<std::string>()), each, each.at("reply"));
        }
    }
}

} // namespace
} // namespace Varnel
