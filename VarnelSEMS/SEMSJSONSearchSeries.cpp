#include <VarnelSEMS/SEMSJSONSearch.h>

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>
#include <VarnelSEMS/SEMSPowerSeries.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numeric>

// Today's power curve: which of the series of a reply it is.

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

/// How likely a series is to be today's power curve; the highest wins. Every term is bounded by a small constant
/// whatever the values, so that no sum can overflow.
int scoreSeries(const SEMSPowerSeries& series, const SEMSSeriesHint& hint) {
    return baseSeriesQualityScore(series) + (hint.hasStrongWord ? 200 : 0) + (hint.hasPointsWord ? 100 : 0) -
           (hint.hasEnergyOrMoneyWord ? 300 : 0);
}

/// What the name and the unit that stand beside a curve of a day response say: the generation is the one wanted; load,
/// grid and battery have the same shape of reply and the same keys. 0 where neither says anything, and larger than
/// all of `scoreSeries` where one does. Either text may be empty.
int historySeriesQualityScore(const QString& name, const QString& unit) {
    const PowerUnitKind kind = unit.isEmpty() ? PowerUnitKind::kilowatts : normalizedPowerUnit(unit);
    const bool isOtherUnit = kind == PowerUnitKind::energy || kind == PowerUnitKind::unknown;
    using L = QLatin1String;
    if (isOtherUnit || containsAny(name, {L("load"), L("grid"), L("meter"), L("batter"), L("soc"), L("consum")})) {
        return -namedSeriesWeight;
    }
    return containsAny(name, {L("pv"), L("solar"), L("generation")}) ? namedSeriesWeight : 0;
}

QString ownText(const JSON* object, std::string_view key) {
    const JSON* found = object ? ownValue(*object, key) : nullptr;
    return found ? coerceToString(*found).value_or(QString()) : QString();
}

/// The path's hint with what the unit text beside the series says, as if the unit were the end of the path.
SEMSSeriesHint withUnit(SEMSSeriesHint hint, const QString& unit) {
    const PowerUnitKind kind = unit.isEmpty() ? PowerUnitKind::unknown : normalizedPowerUnit(unit);
    hint.hasKilowattWord = hint.hasKilowattWord || kind == PowerUnitKind::kilowatts;
    hint.hasWattWord = hint.hasWattWord || kind == PowerUnitKind::watts;
    hint.hasEnergyOrMoneyWord = hint.hasEnergyOrMoneyWord || kind == PowerUnitKind::energy;
    return hint;
}

/// Keeps the best of the candidates that it is shown; of equals, the first.
class SeriesChoice {
public:
    std::optional<SEMSDaySeries> take() { return std::move(m_best); }

    void consider(const JSON& candidate, const SEMSSeriesHint& pathHint, const JSON* owner) {
        if (!pathHint.mayBePower()) {
            return;
        }
        const QString unit = ownText(owner, "unit");
        const SEMSSeriesHint hint = withUnit(pathHint, unit);
        SEMSPowerSeries series = candidate.is_array() ? numericSeriesFromArray(candidate, hint)
                                                      : numericSeriesFromDictionary(candidate, hint);
        if (series.kilowatts.size() < 2) {
            return;
        }
        const int score = scoreSeries(series, hint) + historySeriesQualityScore(ownText(owner, "key"), unit);
        if (!m_best || score > m_bestScore) {
            m_best = static_cast<SEMSDaySeries&&>(series);
            m_bestScore = score;
        }
    }

private:
    std::optional<SEMSDaySeries> m_best;
    int m_bestScore = 0;
};

/// Shows every array (or every object) of the tree, outer before inner. The elements of an array have its path and
/// its owner, the object that holds it.
void collectHits(JSON::value_t wanted, const JSON& tree, const SEMSSeriesHint& hint, const JSON* owner,
                 SeriesChoice& choice) {
    if (tree.type() == wanted) {
        choice.consider(tree, hint, owner);
    }
    if (const auto* members = tree.get_ptr<const JSON::object_t*>()) {
        for (const auto& [name, value] : *members) {
            if (value.is_structured()) {
                collectHits(wanted, value, hint.member(name), &tree, choice);
            }
        }
    } else if (tree.is_array()) {
        for (const JSON& element : tree) {
            collectHits(wanted, element, hint, owner, choice);
        }
    }
}
} // namespace

std::optional<SEMSDaySeries> SEMSJSONSearch::extractTodayPowerSeries(const JSON& root) {
    SeriesChoice choice;
    collectHits(JSON::value_t::array, root, {}, nullptr, choice);
    collectHits(JSON::value_t::object, root, {}, nullptr, choice);
    return choice.take();
}

std::optional<std::vector<double>> SEMSJSONSearch::extractTodayPowerSeriesKW(const JSON& root) {
    std::optional<SEMSDaySeries> series = extractTodayPowerSeries(root);
    return series ? std::optional(std::move(series->kilowatts)) : std::nullopt;
}

} // namespace Varnel
