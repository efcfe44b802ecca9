#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

// The current power.

namespace Varnel {

namespace {
/// In order of priority and normalised, so "current_power" and "currentPower" are one entry.
constexpr std::array<std::string_view, 8> powerKeys = {"pac", "currentpower", "activepower", "outputpower",
                                                       "ppv", "powerac",      "acpower",     "instantpower"};

bool isPowerKey(std::string_view key) {
    return std::any_of(powerKeys.begin(), powerKeys.end(),
                       [key](std::string_view wanted) { return matchesKey(key, wanted); });
}

/// The texts under power keys that name their unit, anywhere in a reply.
class PowerTexts {
public:
    explicit PowerTexts(const JSON& root) {
        collect(root);
        std::sort(m_kilowatts.begin(), m_kilowatts.end());
    }

    /// Whether a number that names no unit itself is in watts; none where the texts do not agree on a unit. All of them
    /// name the number's unit too, unless one says this very power in the other: "3420W" beside 3.42.
    std::optional<bool> meanWatts(double value) const {
        if (m_nameWatts == m_nameKilowatts) {
            return std::nullopt;
        }
        return m_nameWatts ? !say(value) : say(value / 1000);
    }

private:
    void collect(const JSON& tree) {
        if (const auto* members = tree.get_ptr<const JSON::object_t*>()) {
            for (const auto& [key, value] : *members) {
                if (value.is_structured()) {
                    collect(value);
                } else if (value.is_string() && isPowerKey(key)) {
                    hear(value);
                }
            }
        } else if (tree.is_array()) {
            std::for_each(tree.begin(), tree.end(), [this](const JSON& element) { collect(element); });
        }
    }

    void hear(const JSON& text) {
        const std::optional<SEMSNumber> number = coerceToDouble(text);
        if (number && number->ownUnit) {
            m_kilowatts.push_back(number->value);
            m_nameWatts = m_nameWatts || number->ownUnit == PowerUnitKind::watts;
            m_nameKilowatts = m_nameKilowatts || number->ownUnit == PowerUnitKind::kilowatts;
        }
    }

    /// Texts are rounded, to whole watts or to two decimals of a kilowatt.
    bool say(double kilowatts) const {
        const double margin = std::max(0.0005, std::abs(kilowatts) * 0.05);
        const auto nearest = std::lower_bound(m_kilowatts.begin(), m_kilowatts.end(), kilowatts - margin);
        return nearest != m_kilowatts.end() && *nearest <= kilowatts + margin;
    }

    std::vector<double> m_kilowatts; ///< ascending
    bool m_nameWatts = false;
    bool m_nameKilowatts = false;
};

/// The powers that stand under one key of one reply, in kW. What is asked of the whole reply is looked for once and
/// only when the object that holds the number does not tell: there may be many inverters.
class PowerConversion {
public:
    PowerConversion(const JSON& root, std::string_view key)
        : m_root(root)
        , m_key(key) {}

    /// None when the unit is none of a power.
    std::optional<double> kilowatts(const NumberHit& hit) {
        if (hit.number.ownUnit) {
            return hit.number.value;
        }
        const QString unit = resolvedPowerUnit(*hit.context);
        return unit.isEmpty() ? kilowattsWithoutUnit(hit.number.value) : kilowattsIn(unit, hit.number.value);
    }

private:
    /// Looked for in the object that held the number, then anywhere in the reply, where a bare "unit" says nothing.
    /// Empty when there is none.
    QString resolvedPowerUnit(const JSON& context) {
        const std::string ownUnitKey = std::string(m_key) + "unit";
        const QString unit = unitText(context, {ownUnitKey, "powerunit", "unit"});
        if (!unit.isEmpty()) {
            return unit;
        }
        if (!m_rootUnit) {
            m_rootUnit = unitText(m_root, {ownUnitKey, "powerunit", "pacunit", "currentpowerunit", "outputpowerunit",
                                           "activepowerunit", "acpowerunit", "instantpowerunit", "ppvunit"});
        }
        return *m_rootUnit;
    }

    /// Installations of the size this is made for stay far below 100 kW, and the service gives kilowatts with the
    /// fraction of a small number: so a large number counts in watts, and so does one between 10 and 100 with a
    /// fraction.
    double kilowattsWithoutUnit(double value) {
        const bool isFractionOfWatts = value >= 10 && value < 100 && std::trunc(value) != value;
        if (isFractionOfWatts || value > 100) {
            return value / 1000;
        }
        // The reply's own words come before the last step, which takes what is left for kilowatts: the service sends
        // the 1 to 100 W of dawn and dusk without a unit as well.
        return meansWatts(value) ? value / 1000 : value;
    }

    bool meansWatts(double value) {
        if (!m_texts) {
            m_texts.emplace(m_root);
            m_capacityKW = SEMSJSONSearch::extractStationCapacityKW(m_root);
        }
        if (const std::optional<bool> told = m_texts->meanWatts(value)) {
            return *told;
        }
        // With snow around and a cold sky a plant gives somewhat more than its rated size, never half as much again.
        const auto isTooMuch = [this](double kilowatts) { return std::abs(kilowatts) > 1.5 * *m_capacityKW; };
        return m_capacityKW && isTooMuch(value) && !isTooMuch(value / 1000);
    }

    const JSON& m_root;
    std::string_view m_key;
    std::optional<QString> m_rootUnit;
    std::optional<PowerTexts> m_texts;
    std::optional<double> m_capacityKW; ///< known with `m_texts`
};
} // namespace

Result<double> SEMSJSONSearch::extractInstantPowerKW(const JSON& root) {
    for (const std::string_view key : powerKeys) {
        PowerConversion conversion(root, key);
        const auto converted = [&conversion](const NumberHit& hit) { return conversion.kilowatts(hit); };
        if (const std::optional<double> power = sumOf(firstNumberHits(root, key), converted)) {
            return *power;
        }
    }
    return failure(SEMSAPIError::noInstantPower());
}

} // namespace Varnel
