#include <VarnelSEMS/SEMSJSONUnits.h>

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONTree.h>

#include <string>

namespace Varnel {

PowerUnitKind normalizedPowerUnit(const QString& unit) {
    std::string text = normalizedKey(toUtf8(unit));
    std::erase(text, ' ');
    const auto contains = [&text](std::string_view part) { return text.find(part) != std::string::npos; };
    if (contains("kwh") || contains("mwh") || text == "wh") {
        return PowerUnitKind::energy;
    }
    if (text.ends_with("kw") || contains("kw/")) {
        return PowerUnitKind::kilowatts;
    }
    if (text.ends_with('w') || contains("w/")) {
        return PowerUnitKind::watts;
    }
    return PowerUnitKind::unknown;
}

std::optional<double> kilowattsIn(const QString& unit, double value) {
    switch (normalizedPowerUnit(unit)) {
    case PowerUnitKind::kilowatts:
        return value;
    case PowerUnitKind::watts:
        return value / 1000;
    case PowerUnitKind::energy:
    case PowerUnitKind::unknown:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

QString unitText(const JSON& tree, std::initializer_list<std::string_view> normalizedKeys) {
    for (const std::string_view key : normalizedKeys) {
        const JSON* found = firstValue(tree, key);
        if (const std::optional<QString> text = found ? coerceToString(*found) : std::nullopt) {
            return *text;
        }
    }
    return {};
}

QString resolvedPowerUnit(std::string_view normalizedKey, const JSON& context, const JSON& root) {
    const std::string ownUnitKey = std::string(normalizedKey) + "unit";
    QString unit = unitText(context, {ownUnitKey, "powerunit", "unit"});
    if (!unit.isEmpty()) {
        return unit;
    }
    return unitText(root, {ownUnitKey, "powerunit", "pacunit", "currentpowerunit", "outputpowerunit", "activepowerunit",
                           "acpowerunit", "instantpowerunit", "ppvunit"});
}

} // namespace Varnel
