#include <VarnelSEMS/SEMSPowerSeries.h>

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSSeriesIndex.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace Varnel {

namespace {
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

/// Without times the series is taken for a day that begins at midnight.
std::size_t preDawnCount(const std::vector<Sample>& samples) {
    const bool areTimed =
        std::all_of(samples.begin(), samples.end(), [](const Sample& s) { return s.index && s.index->minuteOfDay; });
    if (!areTimed) {
        return samples.size() * earliestDawnMinute / (24UL * 60);
    }
    const auto isPreDawn = [](const Sample& s) { return *s.index->minuteOfDay < earliestDawnMinute; };
    return static_cast<std::size_t>(std::find_if_not(samples.begin(), samples.end(), isPreDawn) - samples.begin());
}

/// What a number without a unit is divided by to give kW. What the hint says decides; where it says nothing, one such
/// value above 100 means watts.
double divisorWithoutUnit(const std::vector<Sample>& samples, const SEMSSeriesHint& hint) {
    const bool isWatts = hint.meansWatts() || std::any_of(samples.begin(), samples.end(), [](const Sample& s) {
                             return !s.number.carriesUnit && s.number.value > 100;
                         });
    return isWatts && !hint.hasKilowattWord ? 1000 : 1;
}

SEMSPowerSeries seriesOf(std::vector<Sample> samples, const SEMSSeriesHint& hint) {
    if (std::all_of(samples.begin(), samples.end(), [](const Sample& s) { return s.index.has_value(); })) {
        std::sort(samples.begin(), samples.end(), isEarlier);
    }
    SEMSPowerSeries series;
    const double divisor = divisorWithoutUnit(samples, hint);
    for (const Sample& sample : samples) {
        const double kilowatts = sample.number.value / (sample.number.carriesUnit ? 1 : divisor);
        series.kilowatts.push_back(std::max(kilowatts, 0.0));
        series.negativeCount += kilowatts < 0 ? 1 : 0;
    }
    series.preDawnCount = preDawnCount(samples);
    return series;
}
} // namespace

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
