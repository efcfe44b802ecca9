#include <VarnelSEMS/SEMSSeriesScore.h>

#include <VarnelSEMS/SEMSJSONUnits.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numeric>

namespace Varnel {

namespace {
/// A day of one value per five minutes, with room; more values make no series better.
constexpr std::size_t longestDay = 300;
constexpr double smoothnessWeight = 100;
constexpr double nonNegativeWeight = 100;
constexpr double preDawnWeight = 200;
constexpr int namedSeriesWeight = 2000;

/// A share between 0 and 1 of a weight, in whole points.
int points(double weight, double share) {
    return static_cast<int>(weight * std::clamp(share, 0.0, 1.0));
}

/// 1 for a line, falling with the steps between neighbours relative to the peak; 0 when nothing was produced.
double smoothness(const std::vector<double>& values, double peak) {
    if (values.size() < 2 || peak <= 0) {
        return 0;
    }
    double steps = 0;
    for (std::size_t i = 1; i < values.size(); ++i) {
        steps += std::abs(values[i] / peak - values[i - 1] / peak);
    }
    return 1 - steps / static_cast<double>(values.size() - 1);
}

/// No sun, no output: what is above the threshold before dawn marks a load or a battery. Never above 0.
int preDawnPlausibilityAdjustment(const SEMSPowerSeries& series, double positiveThreshold) {
    if (series.preDawnCount == 0) {
        return 0;
    }
    const auto begin = series.kilowatts.begin();
    const auto positive = std::count_if(begin, begin + static_cast<std::ptrdiff_t>(series.preDawnCount),
                                        [positiveThreshold](double value) { return value > positiveThreshold; });
    return -points(preDawnWeight, static_cast<double>(positive) / static_cast<double>(series.preDawnCount));
}

/// Prefers long, mostly non-negative, smoothly varying series that are silent before dawn.
int baseSeriesQualityScore(const SEMSPowerSeries& series) {
    const std::vector<double>& values = series.kilowatts;
    if (values.empty()) {
        return 0;
    }
    const double peak = *std::max_element(values.begin(), values.end());
    const double negativeShare = static_cast<double>(series.negativeCount) / static_cast<double>(values.size());
    return static_cast<int>(std::min(values.size(), longestDay)) + points(smoothnessWeight, smoothness(values, peak)) +
           points(nonNegativeWeight, 1 - negativeShare) +
           preDawnPlausibilityAdjustment(series, std::max(0.01, peak * 0.02));
}

bool containsAny(const QString& text, std::initializer_list<QLatin1String> words) {
    return std::any_of(words.begin(), words.end(),
                       [&text](QLatin1String word) { return text.contains(word, Qt::CaseInsensitive); });
}
} // namespace

int scoreSeries(const SEMSPowerSeries& series, const SEMSSeriesHint& hint) {
    return baseSeriesQualityScore(series) + (hint.hasStrongWord ? 200 : 0) + (hint.hasPointsWord ? 100 : 0) -
           (hint.hasEnergyOrMoneyWord ? 300 : 0);
}

int historySeriesQualityScore(const QString& name, const QString& unit) {
    const PowerUnitKind kind = unit.isEmpty() ? PowerUnitKind::kilowatts : normalizedPowerUnit(unit);
    const bool isOtherUnit = kind == PowerUnitKind::energy || kind == PowerUnitKind::unknown;
    using L = QLatin1String;
    if (isOtherUnit || containsAny(name, {L("load"), L("grid"), L("meter"), L("batter"), L("soc"), L("consum")})) {
        return -namedSeriesWeight;
    }
    return containsAny(name, {L("pv"), L("solar"), L("generation")}) ? namedSeriesWeight : 0;
}

} // namespace Varnel
