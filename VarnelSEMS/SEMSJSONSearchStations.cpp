#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelSEMS/SEMSJSONUnits.h>

#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

// The stations of a list reply of either family.

namespace Varnel {

namespace {
/// Keys that only a station has; a bare "id" is on everything.
constexpr std::array<std::string_view, 2> idKeys = {"powerstationid", "pwid"};
constexpr std::array<std::string_view, 4> nameKeys = {"stationname", "powerstationname", "pwname", "name"};
constexpr std::array<std::string_view, 5> capacityKeys = {"capacity", "capacitykw", "installedcapacity",
                                                          "systemcapacity", "pwcapacity"};
/// A capacity without a unit above this counts in watts.
constexpr double largestCapacityKW = 1000;

bool holdsText(const JSON& value) {
    return !coerceToString(value).value_or(QString()).isEmpty();
}

/// One key may stand there in two spellings, of which only one is filled in.
template <std::size_t Count>
std::optional<QString> ownText(const JSON& object, const std::array<std::string_view, Count>& keys) {
    for (const std::string_view key : keys) {
        if (const JSON* found = ownValue(object, key, holdsText)) {
            return coerceToString(*found);
        }
    }
    return std::nullopt;
}

/// The unit beside a capacity: its own, or the object's bare "unit". "kWp" and "Wp" are rated (peak) values.
QString capacityUnit(const JSON& object, std::string_view key) {
    const std::string ownUnitKey = std::string(key) + "unit";
    QString unit =
        ownText(object, std::array<std::string_view, 3>{ownUnitKey, "capacityunit", "unit"}).value_or(QString());
    if (unit.endsWith(QLatin1String("wp"), Qt::CaseInsensitive)) {
        unit.chop(1);
    }
    return unit;
}

std::optional<double> capacityKW(const JSON& object, std::string_view key, const SEMSNumber& number) {
    if (number.ownUnit) {
        return number.value;
    }
    const QString unit = capacityUnit(object, key);
    if (unit.isEmpty()) {
        return number.value > largestCapacityKW ? number.value / 1000 : number.value;
    }
    return kilowattsIn(unit, number.value);
}

std::optional<double> ownCapacityKW(const JSON& object) {
    for (const std::string_view key : capacityKeys) {
        const JSON* found = ownValue(object, key);
        const std::optional<SEMSNumber> number = found ? coerceToDouble(*found) : std::nullopt;
        const std::optional<double> capacity = number ? capacityKW(object, key, *number) : std::nullopt;
        if (capacity && std::abs(*capacity) <= largestPowerKW) {
            return capacity;
        }
    }
    return std::nullopt;
}

template <std::size_t Count>
bool hasAnyKey(const JSON& object, const std::array<std::string_view, Count>& keys) {
    return std::any_of(keys.begin(), keys.end(), [&object](std::string_view key) { return ownValue(object, key); });
}

std::optional<PowerStation> stationOf(const JSON& object) {
    std::optional<QString> id = ownText(object, idKeys);
    if (!id && (hasAnyKey(object, nameKeys) || hasAnyKey(object, capacityKeys))) {
        id = ownText(object, std::array<std::string_view, 1>{"id"});
    }
    if (!id) {
        return std::nullopt;
    }
    return PowerStation{*id, ownText(object, nameKeys), ownCapacityKW(object)};
}

/// The stations by their first mention. A later one adds what the earlier ones left out.
class Collection {
public:
    void add(const PowerStation& station) {
        const auto position = m_positions.constFind(station.id);
        if (position == m_positions.constEnd()) {
            m_positions.insert(station.id, m_stations.size());
            m_stations.push_back(station);
            return;
        }
        PowerStation& known = m_stations[*position];
        known.name = known.name ? known.name : station.name;
        known.capacityKW = known.capacityKW ? known.capacityKW : station.capacityKW;
    }

    std::vector<PowerStation> take() { return std::move(m_stations); }

private:
    std::vector<PowerStation> m_stations;
    QHash<QString, std::size_t> m_positions; ///< by id
};

/// Outer objects before inner ones, in document order.
void collectStations(const JSON& tree, Collection& results) {
    if (const std::optional<PowerStation> station = stationOf(tree)) {
        results.add(*station);
    }
    if (tree.is_structured()) {
        for (const JSON& value : tree) {
            collectStations(value, results);
        }
    }
}

/// Outer objects before inner ones, in document order, past the inverters.
std::optional<double> firstCapacityKW(const JSON& tree, bool (*accepts)(const JSON& object)) {
    std::optional<double> capacity = accepts(tree) ? ownCapacityKW(tree) : std::nullopt;
    if (const auto* members = tree.get_ptr<const JSON::object_t*>()) {
        for (auto member = members->begin(); !capacity && member != members->end(); ++member) {
            if (!namesInverters(member->first)) {
                capacity = firstCapacityKW(member->second, accepts);
            }
        }
    } else if (tree.is_array()) {
        for (auto element = tree.begin(); !capacity && element != tree.end(); ++element) {
            capacity = firstCapacityKW(*element, accepts);
        }
    }
    return capacity;
}
} // namespace

std::optional<double> SEMSJSONSearch::extractStationCapacityKW(const JSON& root) {
    const auto identified = firstCapacityKW(root, [](const JSON& object) { return hasAnyKey(object, idKeys); });
    return identified ? identified : firstCapacityKW(root, [](const JSON& object) { return object.is_object(); });
}

std::vector<PowerStation> SEMSJSONSearch::extractStations(const JSON& root) {
    Collection results;
    collectStations(root, results);
    return results.take();
}

} // namespace Varnel
