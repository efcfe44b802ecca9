#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>
#include <VarnelSEMS/SEMSPowerSeries.h>
#include <VarnelSEMS/SEMSSeriesScore.h>

// Today's power curve.

namespace Varnel {

namespace {
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
    std::optional<std::vector<double>> take() { return std::move(m_best); }

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
            m_best = std::move(series.kilowatts);
            m_bestScore = score;
        }
    }

private:
    std::optional<std::vector<double>> m_best;
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

std::optional<std::vector<double>> SEMSJSONSearch::extractTodayPowerSeriesKW(const JSON& root) {
    SeriesChoice choice;
    collectHits(JSON::value_t::array, root, {}, nullptr, choice);
    collectHits(JSON::value_t::object, root, {}, nullptr, choice);
    return choice.take();
}

} // namespace Varnel
