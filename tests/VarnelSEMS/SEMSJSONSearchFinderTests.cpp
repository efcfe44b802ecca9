#include <VarnelSEMS/SEMSJSONSearch.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using namespace Qt::StringLiterals;

JSON parsed(const char* text) {
    return parseJSON(text).value();
}

TEST(SEMSJSONSearch, FindsTheFirstKeyOfTheListThatHasAText) {
    const JSON reply = parsed(R"({"a":{"Access_Token":"deep"},"token":" top\n","uid":1234567890123,"flag":true,
                                  "ratio":0.25,"whole":12.0,"empty":" ","list":[{"b":{"uid":"later"}}]})");
    const struct {
        QStringList keys;
        std::optional<QString> expected;
    } rows[] = {
        {{u"token"_s}, u"top"_s},
        {{u"accessToken"_s, u"token"_s}, u"deep"_s},
        {{u"missing"_s, u"UID"_s}, u"1234567890123"_s},
        {{u"flag"_s, u"ratio"_s}, u"0.25"_s},
        {{u"whole"_s}, u"12"_s},
        {{u"list"_s, u"empty"_s, u"token"_s}, u""_s},
        {{u"A.access_token"_s}, u"deep"_s},
        {{u".a..accesstoken."_s}, u"deep"_s},
        {{u"list.b.uid"_s, u"a.missing"_s}, std::nullopt},
        {{}, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SEMSJSONSearch::firstString(reply, row.keys), row.expected)
            << row.keys.join(QLatin1Char(' ')).toStdString();
    }
}

TEST(SEMSJSONSearch, CoercesToIntegersAndBooleans) {
    const struct {
        const char* value;
        std::optional<std::int64_t> integer;
        std::optional<bool> boolean;
    } rows[] = {
        {"-1", -1, true},
        {"100002.0", 100002, true},
        {"0.0", 0, false},
        {"9223372036854775808", std::nullopt, true},
        {"-9.3e18", std::nullopt, true},
        {"true", std::nullopt, true},
        {"false", std::nullopt, false},
        {R"("100005")", 100005, std::nullopt},
        {R"(" 1 ")", 1, true},
        {R"("1.5")", std::nullopt, std::nullopt},
        {R"("YES")", std::nullopt, true},
        {R"("no")", std::nullopt, false},
        {R"("innerexception")", std::nullopt, std::nullopt},
        {"null", std::nullopt, std::nullopt},
        {R"({"x":1})", std::nullopt, std::nullopt},
    };
    for (const auto& row : rows) {
        const JSON reply = {{"data", {{"Co_de", parsed(row.value)}}}};
        EXPECT_EQ(SEMSJSONSearch::firstInt(reply, {u"code"_s}), row.integer) << row.value;
        EXPECT_EQ(SEMSJSONSearch::firstBool(reply, {u"data.code"_s}), row.boolean) << row.value;
    }
}

TEST(SEMSJSONSearch, FindsDictionariesAndPaths) {
    const JSON reply = parsed(R"({"data":[1],"result":{"DATA":{"pac":7}},"info":{"p_ac":null}})");
    const JSON* found = SEMSJSONSearch::firstDictionary(reply, {u"data"_s, u"result"_s});
    EXPECT_EQ(found, &reply["result"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, u"result.data.pac"_s), &reply["result"]["DATA"]["pac"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, u"info.pac"_s), &reply["info"]["p_ac"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, u"data.pac"_s), nullptr);
    EXPECT_EQ(SEMSJSONSearch::firstDictionary(reply, {u"result.data.pac"_s}), nullptr);
}

TEST(SEMSJSONSearch, ExtractsStationsOfBothFamilies) {
    const struct {
        const char* name;
        const char* reply;
        std::vector<PowerStation> expected;
    } rows[] = {
        {"portal",
         R"({"data":{"record":2,"list":[
             {"powerstation_id":" a-1 ","stationname":"Home","capacity":5.2,"pac_kw":0.4,"pac_unit":"W",
              "weather":{"name":"Rain","unit":"°C"}},
             {"powerstation_id":"a-2","stationname":"Barn","capacity":5200,"currency":"EUR"}]}})",
         {{u"a-1"_s, u"Home"_s, 5.2}, {u"a-2"_s, u"Barn"_s, 5.2}}},
        {"token",
         R"({"data":[{"powerStationId":7,"stationName":"Roof","capacity":"6,5 kWp"},{"pwId":"p","pwName":"Shed",
             "pw_capacity":800,"pwCapacityUnit":"W"}]})",
         {{u"7"_s, u"Roof"_s, 6.5}, {u"p"_s, u"Shed"_s, 0.8}}},
        {"a bare id needs company",
         R"([{"id":"plain"},{"id":"named","name":""},{"id":3,"installedCapacity":4}])",
         {{u"named"_s, std::nullopt, std::nullopt}, {u"3"_s, std::nullopt, 4}}},
        {"outer before inner, the same once, empty ids never",
         R"({"list":[{"pwId":"in"}],"powerStationId":"out","x":{"pwId":"out","pwName":"again"},"y":{"pwId":""},
             "z":{"power_station_id":null,"pwId":"last"}})",
         {{u"out"_s, std::nullopt, std::nullopt},
          {u"in"_s, std::nullopt, std::nullopt},
          {u"last"_s, std::nullopt, std::nullopt}}},
        {"units of the capacity",
         R"([{"pwId":"1","capacity":5,"capacity_unit":"kWp"},{"pwId":"2","capacity":5000,"unit":"Wp"},
             {"pwId":"3","capacity":9,"unit":"kWh","systemCapacity":"4 kW"},{"pwId":"4","capacity":"--"},
             {"pwId":"5","capacity":1000}])",
         {{u"1"_s, std::nullopt, 5},
          {u"2"_s, std::nullopt, 5},
          {u"3"_s, std::nullopt, 4},
          {u"4"_s, std::nullopt, std::nullopt},
          {u"5"_s, std::nullopt, 1000}}},
        {"none", R"({"data":{"list":[]}})", {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SEMSJSONSearch::extractStations(parsed(row.reply)), row.expected) << row.name;
    }
}

} // namespace
} // namespace Varnel
