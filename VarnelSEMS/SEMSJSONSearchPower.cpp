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

/// The power in kW that a text of any key ends in, "5(W)" and "Power: 0.005kW"; none for any other text.
std::optional<double> powerAtTheEnd(std::string_view text) {
    const std::size_t last = text.find_last_not_of(')');
    if (last == std::string_view::npos || (text[last] != 'W' && text[last] != 'w')) {
        return std::nullopt;
    }
    std::string plain(text);
    std::erase_if(plain, [](char c) { return c == '(' || c == ')'; });
    const std::optional<SEMSNumber> number = parseNumber(plain);
    return number ? std::optional(number->value) : std::nullopt;
}

/// What the texts of a reply say of its powers, in kW and ascending.
class PowerTexts {
public:
    explicit PowerTexts(const JSON& root) {
        collect(root);
        std::sort(m_powers.begin(), m_powers.end());
        std::sort(m_others.begin(), m_others.end());
    }

    /// Whether a number that names no unit itself is in watts by the texts under power keys, anywhere in the reply,
    /// that name theirs; none where these do not agree. One that says this very power in the other unit counts more
    /// than all: "3420W" beside 3.42.
    std::optional<bool> meanWatts(double value) const {
        if (m_nameWatts == m_nameKilowatts) {
            return std::nullopt;
        }
        return m_nameWatts ? !say(m_powers, value) : say(m_powers, value / 1000);
    }

    /// Whether any other text says this very number of watts.
    bool sayInWatts(double value) const { return say(m_others, value / 1000); }

private:
    void collect(const JSON& tree) {
        if (const auto* members = tree.get_ptr<const JSON::object_t*>()) {
            for (const auto& [key, value] : *members) {
                if (const auto* text = value.get_ptr<const JSON::string_t*>()) {
                    hear(key, *text);
                } else {
                    collect(value);
                }
            }
        } else if (tree.is_array()) {
            std::for_each(tree.begin(), tree.end(), [this](const JSON& element) { collect(element); });
        }
    }

    void hear(std::string_view key, std::string_view text) {
        const std::optional<SEMSNumber> number = isPowerKey(key) ? parseNumber(text) : std::nullopt;
        if (number && number->ownUnit) {
            m_powers.push_back(number->value);
            m_nameWatts = m_nameWatts || number->ownUnit == PowerUnitKind::watts;
            m_nameKilowatts = m_nameKilowatts || number->ownUnit == PowerUnitKind::kilowatts;
        } else if (const std::optional<double> power = powerAtTheEnd(text)) {
            m_others.push_back(*power);
        }
    }

    /// Texts are rounded, to whole watts or to two decimals of a kilowatt.
    static bool say(const std::vector<double>& texts, double kilowatts) {
        const double margin = std::max(0.0005, std::abs(kilowatts) * 0.05);
        const auto nearest = std::lower_bound(texts.begin(), texts.end(), kilowatts - margin);
        return nearest != texts.end() && *nearest <= kilowatts + margin;
    }

    std::vector<double> m_powers; ///< under power keys
    std::vector<double> m_others;
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
        QString unit = unitText(context, {ownUnitKey, "powerunit", "unit"});
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
        if (m_capacityKW && isTooMuch(value) && !isTooMuch(value / 1000)) {
            return true;
        }
        // Up to there a few watts may still be kilowatts, but hardly of a number that stands elsewhere in watts.
        return m_texts->sayInWatts(value);
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
        if (const std::optional<double> power = sumOf(firstNumberHits(root, key), largestPowerKW, converted)) {
            return *power;
        }
    }
    return failure(SEMSAPIError::noInstantPower());
}

} // namespace Varnel
