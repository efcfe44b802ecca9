#include <VarnelSEMS/SEMSJSONSearch.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

JSON parsed(const char* text) {
    return parseJSON(text).value();
}

using Text = std::optional<QString>;

TEST(SEMSJSONSearch, FindsTheFirstKeyOfTheListThatHasAText) {
    const JSON reply = parsed(R"({"a":{"Access_Token":"deep"},"token":" top\n","uid":1234567890123,"flag":true,
                                  "ratio":0.25,"whole":12.0,"empty":" ","list":[{"b":{"uid":"later"}}]})");
    const struct {
        QStringList keys;
        Text expected;
    } rows[] = {
        {{QStringLiteral("token")}, QStringLiteral("top")},
        {{QStringLiteral("accessToken"), QStringLiteral("token")}, QStringLiteral("deep")},
        {{QStringLiteral("missing"), QStringLiteral("UID")}, QStringLiteral("1234567890123")},
        {{QStringLiteral("flag"), QStringLiteral("ratio")}, QStringLiteral("0.25")},
        {{QStringLiteral("whole")}, QStringLiteral("12")},
        {{QStringLiteral("list"), QStringLiteral("empty"), QStringLiteral("token")}, QStringLiteral("")},
        {{QStringLiteral("A.access_token")}, QStringLiteral("deep")},
        {{QStringLiteral(".a..accesstoken.")}, QStringLiteral("deep")},
        {{QStringLiteral("list.b.uid"), QStringLiteral("a.missing")}, std::nullopt},
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
        {"0", 0, false},
        {"-1", -1, true},
        {"100002.0", 100002, true},
        {"5.7", std::nullopt, true},
        {"0.0", 0, false},
        {"9223372036854775807", INT64_MAX, true},
        {"9223372036854775808", std::nullopt, true},
        {"1e19", std::nullopt, true},
        {"-9.3e18", std::nullopt, true},
        {"true", std::nullopt, true},
        {"false", std::nullopt, false},
        {R"("100005")", 100005, std::nullopt},
        {R"(" 1 ")", 1, true},
        {R"("0")", 0, false},
        {R"("1.5")", std::nullopt, std::nullopt},
        {R"("YES")", std::nullopt, true},
        {R"("True")", std::nullopt, true},
        {R"("no")", std::nullopt, false},
        {R"("FALSE")", std::nullopt, false},
        {R"("innerexception")", std::nullopt, std::nullopt},
        {R"("")", std::nullopt, std::nullopt},
        {"null", std::nullopt, std::nullopt},
        {"[1]", std::nullopt, std::nullopt},
        {R"({"x":1})", std::nullopt, std::nullopt},
    };
    for (const auto& row : rows) {
        const JSON reply = {{"data", {{"Co_de", parsed(row.value)}}}};
        EXPECT_EQ(SEMSJSONSearch::firstInt(reply, {QStringLiteral("code")}), row.integer) << row.value;
        EXPECT_EQ(SEMSJSONSearch::firstBool(reply, {QStringLiteral("data.code")}), row.boolean) << row.value;
    }
}

TEST(SEMSJSONSearch, FindsDictionariesAndPaths) {
    const JSON reply = parsed(R"({"data":[1],"result":{"DATA":{"pac":7}},"info":{"p_ac":null}})");
    const JSON* found = SEMSJSONSearch::firstDictionary(reply, {QStringLiteral("data"), QStringLiteral("result")});
    EXPECT_EQ(found, &reply["result"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, QStringLiteral("result.data.pac")), &reply["result"]["DATA"]["pac"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, QStringLiteral("info.pac")), &reply["info"]["p_ac"]);
    EXPECT_EQ(SEMSJSONSearch::value(reply, QStringLiteral("data.pac")), nullptr);
    EXPECT_EQ(SEMSJSONSearch::firstDictionary(reply, {QStringLiteral("result.data.pac")}), nullptr);
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
         {{QStringLiteral("a-1"), QStringLiteral("Home"), 5.2}, {QStringLiteral("a-2"), QStringLiteral("Barn"), 5.2}}},
        {"token",
         R"({"data":[{"powerStationId":7,"stationName":"Roof","capacity":"6,5 kWp"},{"pwId":"p","pwName":"Shed",
             "pw_capacity":800,"pwCapacityUnit":"W"}]})",
         {{QStringLiteral("7"), QStringLiteral("Roof"), 6.5}, {QStringLiteral("p"), QStringLiteral("Shed"), 0.8}}},
        {"a bare id needs company",
         R"([{"id":"plain"},{"id":"named","name":""},{"id":3,"installedCapacity":4}])",
         {{QStringLiteral("named"), std::nullopt, std::nullopt}, {QStringLiteral("3"), std::nullopt, 4}}},
        {"outer before inner, the same once, empty ids never",
         R"({"list":[{"pwId":"in"}],"powerStationId":"out","x":{"pwId":"out","pwName":"again"},"y":{"pwId":""},
             "z":{"power_station_id":null,"pwId":"last"}})",
         {{QStringLiteral("out"), std::nullopt, std::nullopt},
          {QStringLiteral("in"), std::nullopt, std::nullopt},
          {QStringLiteral("last"), std::nullopt, std::nullopt}}},
        {"units of the capacity",
         R"([{"pwId":"1","capacity":5,"capacity_unit":"kWp"},{"pwId":"2","capacity":5000,"unit":"Wp"},
             {"pwId":"3","capacity":9,"unit":"kWh","systemCapacity":"4 kW"},{"pwId":"4","capacity":"--"},
             {"pwId":"5","capacity":1000}])",
         {{QStringLiteral("1"), std::nullopt, 5},
          {QStringLiteral("2"), std::nullopt, 5},
          {QStringLiteral("3"), std::nullopt, 4},
          {QStringLiteral("4"), std::nullopt, std::nullopt},
          {QStringLiteral("5"), std::nullopt, 1000}}},
        {"none", R"({"data":{"list":[]}})", {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SEMSJSONSearch::extractStations(parsed(row.reply)), row.expected) << row.name;
    }
}

} // namespace
} // namespace Varnel
