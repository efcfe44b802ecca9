#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSSeriesIndex.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(SEMSJSONSearch, ChoosesAndNormalisesTodaysPowerSeries) {
    const struct {
        const char* name;
        const char* reply;
        std::optional<std::vector<double>> expected;
    } rows[] = {
        {"watts above a hundred", R"({"power":[0,50,200]})", {{0, 0.05, 0.2}}},
        {"a small curve is kilowatts", R"({"power":[0,50,100]})", {{0, 50, 100}}},
        {"a path that names kW is never divided", R"({"kw":{"power":[0,50,200]}})", {{0, 50, 200}}},
        {"a path that names watts", R"({"watts":{"power":[0,50]}})", {{0, 0.05}}},
        {"a path that ends in w", R"({"power":{"w":[0,50]}})", {{0, 0.05}}},
        {"a w further up says nothing", R"({"power_w":{"line":[0,50]}})", {{0, 50}}},
        {"negative values become zero", R"({"power":[-3,-5]})", {{0, 0}}},
        {"numeric texts, gaps left out", R"({"pac":["1,5",null,"","--",true,[4],"2.5"]})", {{1.5, 2.5}}},
        {"texts with units are in kW already", R"({"power_watt":["381W","500 W"]})", {{0.381, 0.5}}},
        {"value members",
         R"({"pacs":[{"value":1},{"Y":2},{"pac":"3"},{"power":4},{"z":5},{"y":null}]})",
         {{1, 2, 3, 4}}},
        {"axis labels are no numbers", R"({"timeline":["00:00","00:05","06/21/2025"]})", std::nullopt},
        {"one point is none", R"({"power":[5]})", std::nullopt},
        {"no word", R"({"data":[1,2,3]})", std::nullopt},
        {"top level has no path", "[1,2,3]", std::nullopt},
        {"energy", R"({"energy":{"power":[1,2]}})", std::nullopt},
        {"wh in a word", R"({"power":{"whole":[1,2]}})", std::nullopt},
        {"another quantity", R"({"weather":{"power":[1,2]},"temp_line":[3,4]})", std::nullopt},
        {"nested arrays have the outer path", R"({"power":[[1,2],[1,2,3]]})", {{1, 2, 3}}},
        {"word bonus beats a few more points", R"({"pv":[0,1,2,3,4,5,6,7],"output":[0,1,2,3]})", {{0, 1, 2, 3}}},
        {"points bonus", R"({"power":{"a":[0,1,2],"points":[0,2,4]}})", {{0, 2, 4}}},
        {"longer", R"({"power":{"a":[0,1,2],"b":[0,1,2,3]}})", {{0, 1, 2, 3}}},
        {"first of equals", R"({"power":{"a":[0,1,2],"b":[0,2,4]}})", {{0, 1, 2}}},
        {"arrays before equal objects", R"({"power":{"a":{"0":0,"1":3},"b":[0,2]}})", {{0, 2}}},
        {"object in order of its index", R"({"curve":{"10":3,"9":2,"hour_11":4,"pac":7,"note":"x"}})", {{2, 3, 4}}},
        {"equal indices keep their order", R"({"curve":{"h1":3,"1":2,"p_0":4}})", {{4, 3, 2}}},
        {"object in order of its times", R"({"curve":{"10:00":3,"9:55":{"y":2}," 9:50:30":1}})", {{1, 2, 3}}},
        {"array in order of its times", R"({"pacs":[{"x":"12:10","y":2},{"x":"12:05","y":1}]})", {{1, 2}}},
        {"without all times in document order", R"({"pacs":[{"x":"12:10","y":2},{"y":1}]})", {{2, 1}}},
        {"unit beside the curve", R"({"lines":[{"unit":"W","xy":[{"y":5},{"y":80}]}]})", {{0.005, 0.08}}},
        {"kW beside the curve", R"({"lines":[{"unit":"kW","xy":[{"y":5},{"y":180}]}]})", {{5, 180}}},
        {"named curves",
         R"({"lines":[{"key":"PCurve_Power_Load","xy":[{"y":1},{"y":2},{"y":3}]},
                      {"key":"PCurve_Power_PV","xy":[{"y":0},{"y":1}]}]})",
         {{0, 1}}},
        {"a state of charge is no power",
         R"({"lines":[{"unit":"%","xy":[{"y":1},{"y":2},{"y":3}]},{"unit":"W","xy":[{"y":0},{"y":1}]}]})",
         {{0, 0.001}}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SEMSJSONSearch::extractTodayPowerSeriesKW(parseJSON(row.reply).value()), row.expected) << row.name;
    }
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
