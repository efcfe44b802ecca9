#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSReply.h>

#include "../Support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

// Every stored reply, spoilt: whatever is left of it ends in a value that a house can have, in none or in a typed
// error.

namespace Varnel {
namespace {

const QDir storedFolder(QStringLiteral(VARNEL_TESTS_FOLDER "/replies"));

std::vector<QByteArray> storedReplies() {
    std::vector<QByteArray> replies;
    for (const QString& name : storedFolder.entryList({QStringLiteral("*.json")}, QDir::Files)) {
        if (!name.endsWith(QLatin1String(".expected.json"))) {
            replies.push_back(Testing::contentOf(storedFolder.filePath(name)));
        }
    }
    EXPECT_GE(replies.size(), 10U);
    std::sort(replies.begin(), replies.end(), [](const QByteArray& one, const QByteArray& other) {
        return one.size() < other.size(); // what small ones show is not shown again with large ones
    });
    return replies;
}

void expectTyped(const Error& error, const std::string& how) {
    EXPECT_TRUE(error.as<SEMSAPIError>() || error.as<JSONError>()) << how;
    EXPECT_FALSE(error.localizedDescription().isEmpty()) << how;
}

void expectSaneNumbers(const JSON& reply, const std::string& how) {
    const auto power = SEMSJSONSearch::extractInstantPowerKW(reply);
    EXPECT_LE(std::abs(power.value_or(0)), 1e6) << how;
    if (!power) {
        expectTyped(power.error(), how);
    }
    const auto energy = SEMSJSONSearch::extractDayOutputKWh(reply, QDate(2025, 6, 21));
    EXPECT_LE(std::abs(energy.value_or(0)), 1e9) << how;
    for (const double value : SEMSJSONSearch::extractTodayPowerSeriesKW(reply).value_or(std::vector<double>())) {
        EXPECT_TRUE(value >= 0 && value <= 1e6) << how;
    }
    for (const PowerStation& station : SEMSJSONSearch::extractStations(reply)) {
        EXPECT_FALSE(station.id.isEmpty()) << how;
        EXPECT_LE(std::abs(station.capacityKW.value_or(0)), 1e6) << how;
    }
}

void expectSane(const Result<void>& envelope, const JSON& reply, const std::string& how) {
    if (!envelope) {
        expectTyped(envelope.error(), how);
    }
    expectSaneNumbers(reply, how);
}

/// The first value of each name: what stands under one name is read in one way.
void collectValues(JSON& tree, std::set<std::string>& names, std::vector<std::pair<std::string, JSON*>>& values) {
    if (auto* members = tree.get_ptr<JSON::object_t*>()) {
        for (auto& [name, value] : *members) {
            if (names.insert(name).second) {
                values.emplace_back(name, &value);
            }
            collectValues(value, names, values);
        }
    } else if (tree.is_array()) {
        for (JSON& element : tree) {
            collectValues(element, names, values);
        }
    }
}

TEST(SEMSReplyMutations, ACutReplyIsUnreadableWhereverItIsCut) {
    for (const QByteArray& reply : storedReplies()) {
        // Of the long ones every part of the grammar is there many times.
        const qsizetype step = reply.size() > 1000 ? reply.size() / 250 : 1;
        const QByteArray whole = reply.trimmed();
        for (qsizetype size = 0; size < whole.size(); size += step) {
            const auto judged = judgedReply({200, {}, whole.left(size)}, {}, {});
            ASSERT_FALSE(judged) << size << " bytes of " << whole.left(80).toStdString();
            expectTyped(judged.error(), std::to_string(size));
        }
    }
}

TEST(SEMSReplyMutations, AnyValueInAnyPlaceEndsWell) {
    const std::string digits(10000, '9');
    const std::vector<JSON> spoilt = {nullptr, digits, 1e308, JSON::object(), "--",   JSON::array(),          -1, "",
                                      -1e308,  65535,  "NaN", "1e999",        "∞ kW", std::string(10000, 'W')};
    std::set<std::string> names; // of all replies: one name is read in one way everywhere
    for (const QByteArray& bytes : storedReplies()) {
        JSON reply = parseJSON(bytes).value();
        std::vector<std::pair<std::string, JSON*>> values;
        collectValues(reply, names, values);
        const std::size_t kinds = bytes.size() > 6000 ? 5 : spoilt.size(); // the longest take their time
        for (const auto& [name, value] : values) {
            JSON before = std::move(*value); // moved, so that what is inside stays where it is
            for (std::size_t kind = 0; kind < kinds; ++kind) {
                *value = spoilt[kind];
                expectSane(validateEnvelope(reply), reply, name + ": " + spoilt[kind].dump().substr(0, 40));
            }
            *value = std::move(before);
        }
    }
    EXPECT_GE(names.size(), 100U);
}

} // namespace
} // namespace Varnel
