#include <VarnelSEMS/SEMSPowerSeries.h>

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>
#include <VarnelShared/Text.h>

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <tuple>

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

/// Grows with the days of either form of date; 0 without one.
int dayOrder(const QRegularExpressionMatch& match) {
    const bool isYearFirst = match.capturedLength(1) == 4;
    const int year = match.captured(isYearFirst ? 1 : 3).toInt();
    const int month = match.captured(isYearFirst ? 2 : 1).toInt();
    const int day = match.captured(isYearFirst ? 3 : 2).toInt();
    return (year * 12 + month) * 31 + day;
}

std::optional<SEMSSeriesIndex> clockIndex(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*(?:(\d{1,4})\D{1,3}(\d{1,2})\D{1,3}(\d{1,4})\D{1,3})?(\d{1,2})\s*:\s*(\d{2})(?:\s*:\s*(\d{2}))?)"));
    const QRegularExpressionMatch match = pattern.match(text);
    const int hour = match.captured(4).toInt();
    const int minute = match.captured(5).toInt();
    if (!match.hasMatch() || hour > 24 || minute > 59) {
        return std::nullopt;
    }
    const int minuteOfDay = hour * 60 + minute;
    return SEMSSeriesIndex{dayOrder(match) * 86400.0 + minuteOfDay * 60.0 + match.captured(6).toInt(), minuteOfDay};
}

constexpr std::array<std::string_view, 4> valueKeys = {"y", "value", "pac", "power"};
constexpr std::array<std::string_view, 4> timeKeys = {"x", "date", "time", "t"};
/// Before this minute of the day there is light only beyond the polar circle.
constexpr int earliestDawnMinute = 3 * 60;

struct Sample {
    SEMSNumber number;
    std::optional<SEMSSeriesIndex> index;
    std::size_t position = 0; ///< in the document
};

/// Equal times keep the order of the document. std::stable_sort would do, but clang warns of what libstdc++ 12 makes
/// of it.
bool isEarlier(const Sample& a, const Sample& b) {
    return std::tie(a.index->order, a.position) < std::tie(b.index->order, b.position);
}

/// Whether a text is one number with at most a unit behind it: "12:05", "01/02/2025" and "2025-01-02" are labels of an
/// axis.
bool isNumericText(std::string_view text) {
    const std::size_t sign = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const std::size_t begin = sign + (text.substr(sign).find_first_of("+-") == 0 ? 1 : 0);
    const std::size_t end = text.find_first_not_of("0123456789.,", begin);
    if (end == begin) {
        return false;
    }
    return end == std::string_view::npos || text.find_first_of("0123456789:/", end) == std::string_view::npos;
}

std::optional<SEMSNumber> scalarNumber(const JSON& value) {
    if (const auto* text = value.get_ptr<const JSON::string_t*>()) {
        return isNumericText(*text) ? parseNumber(*text) : std::nullopt;
    }
    return value.is_number() ? coerceToDouble(value) : std::nullopt;
}

std::optional<SEMSNumber> sampleNumber(const JSON& element) {
    if (!element.is_object()) {
        return scalarNumber(element);
    }
    for (const std::string_view key : valueKeys) {
        const JSON* value = ownValue(element, key);
        if (std::optional<SEMSNumber> number = value ? scalarNumber(*value) : std::nullopt) {
            return number;
        }
    }
    return std::nullopt;
}

std::optional<SEMSSeriesIndex> sampleIndex(const JSON& element) {
    for (const std::string_view key : timeKeys) {
        const JSON* time = ownValue(element, key);
        if (time && time->is_number()) {
            return SEMSSeriesIndex{time->get<double>(), std::nullopt};
        }
        if (std::optional<SEMSSeriesIndex> index = time ? parsedSeriesIndex(textOf(*time)) : std::nullopt) {
            return index;
        }
    }
    return std::nullopt;
}

std::vector<int> minutesOfDay(const std::vector<Sample>& samples) {
    std::vector<int> minutes;
    minutes.reserve(samples.size());
    for (const Sample& sample : samples) {
        if (!sample.index || !sample.index->minuteOfDay) {
            return {};
        }
        minutes.push_back(*sample.index->minuteOfDay);
    }
    return minutes;
}

/// Without times the series is taken for a day that begins at midnight.
std::size_t preDawnCount(const SEMSPowerSeries& series) {
    const std::vector<int>& minutes = series.minutesOfDay;
    if (minutes.empty()) {
        return series.kilowatts.size() * earliestDawnMinute / (24UL * 60);
    }
    const auto isPreDawn = [](int minute) { return minute < earliestDawnMinute; };
    return static_cast<std::size_t>(std::find_if_not(minutes.begin(), minutes.end(), isPreDawn) - minutes.begin());
}

/// What a number without a unit is divided by to give kW. What the hint says decides; where it says nothing, one such
/// value above 100 means watts.
double divisorWithoutUnit(const std::vector<Sample>& samples, const SEMSSeriesHint& hint) {
    const bool isWatts =
        hint.meansWatts() || std::any_of(samples.begin(), samples.end(), [](const Sample& s) {
            return !s.number.ownUnit && s.number.value > 100 && s.number.value <= largestPowerKW * 1000;
        });
    return isWatts && !hint.hasKilowattWord ? 1000 : 1;
}

SEMSPowerSeries seriesOf(std::vector<Sample> samples, const SEMSSeriesHint& hint) {
    if (std::all_of(samples.begin(), samples.end(), [](const Sample& s) { return s.index.has_value(); })) {
        std::sort(samples.begin(), samples.end(), isEarlier);
    }
    SEMSPowerSeries series;
    const double divisor = divisorWithoutUnit(samples, hint);
    const auto kilowattsOf = [divisor](const Sample& sample) {
        return sample.number.value / (sample.number.ownUnit ? 1 : divisor);
    };
    std::erase_if(samples, [&](const Sample& sample) { return std::abs(kilowattsOf(sample)) > largestPowerKW; });
    for (const Sample& sample : samples) {
        const double kilowatts = kilowattsOf(sample);
        series.kilowatts.push_back(std::max(kilowatts, 0.0));
        series.negativeCount += kilowatts < 0 ? 1 : 0;
    }
    series.minutesOfDay = minutesOfDay(samples);
    series.preDawnCount = preDawnCount(series);
    return series;
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

std::optional<SEMSSeriesIndex> parsedSeriesIndex(const QString& text) {
    if (const std::optional<SEMSSeriesIndex> clock = clockIndex(text)) {
        return clock;
    }
    static const QRegularExpression pattern(QStringLiteral(R"(^(?:hour|minute|time|point|h|t|p)?_?(\d{1,15})$)"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(trimmed(text));
    return match.hasMatch() ? std::optional(SEMSSeriesIndex{match.captured(1).toDouble(), std::nullopt}) : std::nullopt;
}

SEMSPowerSeries numericSeriesFromArray(const JSON& array, const SEMSSeriesHint& hint) {
    std::vector<Sample> samples;
    for (const JSON& element : array) {
        if (const std::optional<SEMSNumber> number = sampleNumber(element)) {
            samples.push_back({*number, sampleIndex(element), samples.size()});
        }
    }
    return seriesOf(std::move(samples), hint);
}

SEMSPowerSeries numericSeriesFromDictionary(const JSON& object, const SEMSSeriesHint& hint) {
    std::vector<Sample> samples;
    for (const auto& [key, value] : object.get_ref<const JSON::object_t&>()) {
        const std::optional<SEMSNumber> number = sampleNumber(value);
        const std::optional<SEMSSeriesIndex> index =
            number ? parsedSeriesIndex(QString::fromStdString(key)) : std::nullopt;
        if (index) {
            samples.push_back({*number, index, samples.size()});
        }
    }
    return seriesOf(std::move(samples), hint);
}

} // namespace Varnel
