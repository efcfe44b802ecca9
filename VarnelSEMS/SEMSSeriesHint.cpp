#include <VarnelSEMS/SEMSSeriesHint.h>

#include <VarnelSEMS/SEMSJSONTree.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace Varnel {

namespace {
using Words = std::span<const std::string_view>;

constexpr auto energyOrMoneyWords = std::to_array<std::string_view>(
    {"energy", "kwh", "wh", "eday", "etoday", "income", "money", "benefit", "earnings", "profit"});
constexpr auto powerOrCurveWords =
    std::to_array<std::string_view>({"power", "pac", "ppv", "pv", "output", "curve", "line", "trend", "chart", "plot",
                                     "series", "time", "hour", "minute"});
constexpr auto otherQuantityWords = std::to_array<std::string_view>({"temp", "humidity", "wind", "weather", "co2"});
constexpr auto strongWords =
    std::to_array<std::string_view>({"power", "pac", "ppv", "curve", "line", "trend", "chart", "output"});
constexpr auto pointsWords = std::to_array<std::string_view>({"values", "points", "plot", "series"});

bool containsAny(const std::string& text, Words words) {
    return std::any_of(words.begin(), words.end(),
                       [&text](std::string_view word) { return text.find(word) != std::string::npos; });
}
} // namespace

SEMSSeriesHint SEMSSeriesHint::member(std::string_view name) const {
    const std::string text = lowercased(name);
    SEMSSeriesHint hint = *this;
    hint.hasEnergyOrMoneyWord = hasEnergyOrMoneyWord || containsAny(text, energyOrMoneyWords);
    hint.hasPowerOrCurveWord = hasPowerOrCurveWord || containsAny(text, powerOrCurveWords);
    hint.hasOtherQuantityWord = hasOtherQuantityWord || containsAny(text, otherQuantityWords);
    hint.hasStrongWord = hasStrongWord || containsAny(text, strongWords);
    hint.hasPointsWord = hasPointsWord || containsAny(text, pointsWords);
    hint.hasKilowattWord = hasKilowattWord || text.find("kw") != std::string::npos;
    hint.hasWattWord = hasWattWord || text.find("watt") != std::string::npos;
    hint.endsInW = text.ends_with('w');
    return hint;
}

} // namespace Varnel
