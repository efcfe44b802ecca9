#include <VarnelSEMS/SEMSJSONSearch.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

struct Row {
    const char* name;
    const char* reply;
    std::optional<double> expected;

    void expect(const std::optional<double>& found) const {
        EXPECT_EQ(found.has_value(), expected.has_value()) << name;
        EXPECT_DOUBLE_EQ(found.value_or(0), expected.value_or(0)) << name;
    }
};

const Row powers[] = {
    {"above a hundred is watts", R"({"data":{"pac":3500}})", 3.5},
    {"a hundred is not above", R"({"pac":100})", 100},
    {"between ten and a hundred with a fraction is watts", R"({"data":{"pac":45.5}})", 0.0455},
    {"between ten and a hundred without one is kilowatts", R"({"data":{"pac":45}})", 45},
    {"from ten on", R"({"pac":10.5})", 0.0105},
    {"below ten", R"({"pac":9.99})", 9.99},
    {"negative is never taken for watts", R"({"pac":-2500})", -2500},
    {"a boolean counts", R"({"pac":true})", 1},
    {"W", R"({"pac":50,"pac_unit":"W"})", 0.05},
    {"kW keeps a large number", R"({"pac":150,"pac_unit":" kW "})", 150},
    {"kW keeps an ambiguous number", R"({"pac":45.5,"unit":"KW"})", 45.5},
    {"MW is watts", R"({"pac":1500,"unit":"MW"})", 1.5},
    {"W/m2 is watts", R"({"pac":50,"unit":"w/m2"})", 0.05},
    {"kW/h is kilowatts", R"({"pac":50,"unit":"kW/h"})", 50},
    {"number as text", R"({"pac":"50","unit":"W"})", 0.05},
    {"key's own unit before the bare one", R"({"unit":"kWh","pacUnit":"W","pac":50})", 0.05},
    {"power_unit before the bare one", R"({"unit":"kWh","power_unit":"W","pac":50})", 0.05},
    {"below the object of the hit", R"({"pac":50,"more":{"unit":"W"}})", 0.05},
    {"at the root", R"({"data":{"pac":50},"units":{"ppv_unit":"W"}})", 0.05},
    {"the key's own at the root first", R"({"d":{"ppv":50},"u":{"pac_unit":"kW","ppv_unit":"W"}})", 0.05},
    {"bare unit elsewhere says nothing", R"({"d":{"pac":50},"e":{"unit":"W"}})", 50},
    {"empty unit is none", R"({"pac":3500,"unit":""})", 3.5},
    {"empty unit here, unit at the root", R"({"d":{"pac":50,"unit":" "},"pac_unit":"W"})", 0.05},
    {"energy moves on", R"({"pac":2,"pac_unit":"kWh","currentPower":"1500 W"})", 1.5},
    {"unknown moves on", R"({"d":{"pac":2,"unit":"%"},"e":{"ppv":3}})", 3},
    {"a rejected unit leaves nothing", R"({"pac":2,"unit":"A"})", std::nullopt},
    {"decimal comma", R"({"Current_Power":"2,5 kW"})", 2.5},
    {"thousands are no separator", R"({"pac":"1,234 kW"})", 1.234},
    {"watts glued on", R"({"pac":"381W"})", 0.381},
    {"words around it", R"({"pac":"Power: 0.589kW"})", 0.589},
    {"own unit keeps a large number", R"({"pac":"150kW"})", 150},
    {"own unit beats a unit field", R"({"pac":"1500 W","unit":"W","pac_unit":"kWh"})", 1.5},
    {"a unit in brackets is none", R"-({"pac":"2337(W)"})-", 2.337},
    {"MW counts as watts", R"({"pac":"1500 MW"})", 1.5},
    {"signs", R"({"pac":"-0.5 kW"})", -0.5},
    {"only the first number", R"({"pac":"1.2.3"})", 1.2},
    {"texts without a number are passed over", R"({"pac":"--","a":{"pac":""},"b":{"pac":"-"},"c":{"pac":"4"}})", 4},
    {"nulls, arrays and objects are passed over", R"({"pac":null,"a":{"pac":[1]},"b":{"pac":{"pac":4}}})", 4},
    {"own members before anything below", R"({"a":{"pac":1},"pac":2})", 2},
    {"a whole subtree before the next", R"({"a":{"b":{"c":{"pac":1}}},"d":{"pac":2}})", 1},
    {"elements in order", R"([[{"x":1}],{"pac":1},{"pac":2}])", 1},
    {"earlier key however deep", R"({"currentPower":1,"a":{"b":[{"pac":2}]}})", 2},
    {"acPower", R"({"acPower":3})", 3},
    {"instant_power last", R"({"instant_power":3})", 3},
    {"pac_kw is another key", R"({"data":{"pac_kw":0.4,"eday":3}})", std::nullopt},
    {"no key", R"({"data":{}})", std::nullopt},
    {"no object", R"("pac")", std::nullopt},
};

const Row energies[] = {
    {"above a thousand is Wh", R"({"eday":12300})", 12.3},
    {"a thousand is not above", R"({"eday":1000})", 1000},
    {"MWh", R"({"eday":5,"eday_unit":"MWh"})", 5000},
    {"kWh keeps a large number", R"({"eday":5000,"unit":"kWh"})", 5000},
    {"Wh", R"({"e_day":500,"unit":"Wh"})", 0.5},
    {"another key's unit", R"({"dailyYield":500,"etoday_unit":"wh"})", 0.5},
    {"the key's own unit first", R"({"unit":"MWh","dailyYield":500,"dailyYieldUnit":"Wh"})", 0.5},
    {"unknown unit is none", R"({"eday":1500,"unit":"J"})", 1.5},
    {"empty unit is none", R"({"eday":1500,"unit":""})", 1.5},
    {"a unit elsewhere says nothing", R"({"d":{"eday":5},"unit":"MWh"})", 5},
    {"the key itself names Wh", R"({"todayenergykwh":12.3})", 0.0123},
    {"unless a unit is there", R"({"today_energy_kWh":12.3,"unit":"kWh"})", 12.3},
    {"text", R"({"eday":"Generation Today: 8.9kWh"})", 8.9},
    {"text in Wh", R"({"eday":"500 Wh","unit":"Wh"})", 0.5},
    {"text with its unit keeps a large number", R"({"eday":"1500 kWh"})", 1500},
    {"first key of the list however deep", R"({"eday":1,"a":{"eToday":2}})", 2},
    {"last key of the list", R"({"today_output":7})", 7},
    {"junk passed over", R"({"eday":"--","a":{"eday":"3,5"}})", 3.5},
    {"none", R"({"kpi":{"power":9.1}})", std::nullopt},
};

TEST(SEMSJSONSearch, FindsInstantPowerInKilowatts) {
    for (const Row& row : powers) {
        const Result<double> power = SEMSJSONSearch::extractInstantPowerKW(parseJSON(row.reply).value());
        row.expect(power ? std::optional(*power) : std::nullopt);
    }
    const JSON noDouble = {{"pac", std::string(400, '9')}, {"ppv", 2}};
    EXPECT_EQ(SEMSJSONSearch::extractInstantPowerKW(noDouble).value(), 2);
}

TEST(SEMSJSONSearch, FindsTodaysOutputInKilowattHours) {
    for (const Row& row : energies) {
        row.expect(SEMSJSONSearch::extractTodayOutputKWh(parseJSON(row.reply).value()));
    }
}

} // namespace
} // namespace Varnel
