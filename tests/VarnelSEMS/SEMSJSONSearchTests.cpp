#include <VarnelSEMS/SEMSJSONSearch.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

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

TEST(SEMSJSONSearch, PassesOverADigitStringThatNoDoubleHolds) {
    const JSON reply = {{"pac", std::string(400, '9')}, {"ppv", 2}};
    EXPECT_EQ(SEMSJSONSearch::extractInstantPowerKW(reply).value(), 2);
}

/// One value per five minutes of a day.
JSON day(double (*power)(double hour)) {
    JSON values = JSON::array();
    for (int i = 0; i < 288; ++i) {
        values.push_back(power(i / 12.0));
    }
    return values;
}

double sun(double hour) {
    return hour > 6 && hour < 20 ? 3.0 * (hour - 6) * (20 - hour) / 49 : 0;
}

TEST(SEMSJSONSearch, PrefersTheCurveThatTheSunDraws) {
    const JSON sunDay = day(sun);
    const struct {
        const char* name;
        JSON other;
    } rows[] = {
        {"output before dawn", day([](double hour) { return 1.0 + 0.01 * hour; })},
        {"jumps", day([](double hour) { return hour > 4 && int(hour * 12) % 2 ? 3.0 : 0.0; })},
        {"mostly negative", day([](double hour) { return sun(hour) * 1.2 - 2.5; })},
        {"nothing at all", day([](double) { return 0.0; })},
    };
    for (const auto& row : rows) {
        const JSON reply = {{"power", {{"a", row.other}, {"b", sunDay}}}};
        EXPECT_EQ(SEMSJSONSearch::extractTodayPowerSeriesKW(reply), sunDay.get<std::vector<double>>()) << row.name;
    }
}

} // namespace
} // namespace Varnel
