#include <VarnelSEMS/SEMSJSONUnits.h>

#include <VarnelSEMS/SEMSJSONTree.h>

#include <cmath>
#include <string>

namespace Varnel {

namespace {
bool isNumber(const JSON& value) {
    return coerceToDouble(value).has_value();
}
} // namespace

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
    for (const JSON* found : firstValues(tree, {normalizedKeys.begin(), normalizedKeys.size()})) {
        if (const std::optional<QString> text = found ? coerceToString(*found) : std::nullopt) {
            return *text;
        }
    }
    return {};
}

std::vector<NumberHit> firstNumberHits(const JSON& tree, std::string_view normalizedKey) {
    std::vector<NumberHit> hits;
    for (const SEMSJSONMember& member : firstMemberOfEveryInverter(tree, normalizedKey, isNumber)) {
        hits.push_back({*coerceToDouble(*member.value), normalizedKey, member.context});
    }
    return hits;
}

std::optional<double> sumOf(const std::vector<NumberHit>& hits, double limit,
                            const std::function<std::optional<double>(const NumberHit&)>& converted) {
    std::optional<double> sum;
    for (const NumberHit& hit : hits) {
        const std::optional<double> number = converted(hit);
        const double more = sum.value_or(0) + number.value_or(0);
        if (number && std::abs(*number) <= limit && std::abs(more) <= limit) {
            sum = more;
        }
        if (!sum) {
            break;
        }
    }
    return sum;
}

} // namespace Varnel
