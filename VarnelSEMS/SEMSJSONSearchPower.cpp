#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>

#include <array>
#include <cmath>
#include <string>
#include <string_view>

// The current power.

namespace Varnel {

namespace {
/// In order of priority and normalised, so "current_power" and "currentPower" are one entry.
constexpr std::array<std::string_view, 8> powerKeys = {"pac", "currentpower", "activepower", "outputpower",
                                                       "ppv", "powerac",      "acpower",     "instantpower"};

/// The powers that stand under one key of one reply, in kW. What is asked of the whole reply is looked for once and
/// only when the object that holds the number does not tell: there may be many inverters.
class PowerConversion {
public:
    PowerConversion(const JSON& root, std::string_view key)
        : m_root(root)
        , m_key(key) {}

    /// None when the unit is none of a power.
    std::optional<double> kilowatts(const NumberHit& hit) {
        if (hit.number.carriesUnit) {
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
    static double kilowattsWithoutUnit(double value) {
        const bool isFractionOfWatts = value >= 10 && value < 100 && std::trunc(value) != value;
        return isFractionOfWatts || value > 100 ? value / 1000 : value;
    }

    const JSON& m_root;
    std::string_view m_key;
    std::optional<QString> m_rootUnit;
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
