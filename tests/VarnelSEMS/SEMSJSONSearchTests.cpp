#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSSeriesIndex.h>

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

TEST(SEMSSeriesIndex, ReadsTimesAndIndexes) {
    const auto order = [](const char* text) {
        const auto index = parsedSeriesIndex(QLatin1String(text));
        return index ? std::optional(index->order) : std::nullopt;
    };
    EXPECT_EQ(order("12:05"), 12 * 3600 + 300);
    EXPECT_EQ(order(" 7 "), 7);
    EXPECT_EQ(order("t_0935"), 935);
    EXPECT_LT(order("12/31/2024 23:59:00"), order("01/01/2025 00:00:00"));
    EXPECT_LT(order("06/ 9/2025  9:05:59"), order("06/09/2025 09:06:00"));
    EXPECT_LT(order("2025-06-21T12:05"), order("2025-06-22T00:00"));
    for (const char* text : {"", "pac", "vpv1", "25:00", "12:60", "2025-06-21", "-1", "1.5", "999999999999999999999"}) {
        EXPECT_EQ(order(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace Varnel
