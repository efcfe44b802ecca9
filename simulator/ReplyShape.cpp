#include <simulator/ReplyShape.h>

#include <cmath>
#include <utility>

namespace Varnel::Simulator {

namespace {
constexpr std::pair<const char*, const char*> renamedKeys[] = {
    {"pac", "Current_Power"},    {"pac_unit", "Current_Power_unit"},
    {"eday", "Today_Energy"},    {"eday_unit", "Today_Energy_unit"},
    {"eDay", "todayEnergy"},     {"capacity", "installedCapacity"},
    {"powerstation_id", "pwId"}, {"powerStationId", "pwId"},
    {"stationname", "pwName"},   {"stationName", "pwName"},
};

constexpr const char* todayEnergyKeys[] = {"eday", "eday_unit", "eDay"};

std::string renamed(const std::string& key) {
    for (const auto& [usual, other] : renamedKeys) {
        if (key == usual) {
            return other;
        }
    }
    return key;
}

/// Twelve significant digits at most, without an exponent for what a station measures.
std::string decimal(double value) {
    return QString::number(rounded(value), 'g', 12).toStdString();
}

struct Unit {
    const char* small; ///< a thousandth of `large`
    const char* large;
};

void setQuantity(JSON& object, const std::string& key, double value, UnitStyle style, Unit unit) {
    switch (style) {
    case UnitStyle::wattsAndUnit:
        object[key + "_unit"] = unit.small;
        [[fallthrough]];
    case UnitStyle::watts:
        object[key] = rounded(value * 1000);
        return;
    case UnitStyle::kilowattsAndUnit:
        object[key + "_unit"] = unit.large;
        [[fallthrough]];
    case UnitStyle::kilowatts:
        object[key] = rounded(value);
        return;
    case UnitStyle::wattText:
        object[key] = decimal(value * 1000) + " " + unit.small;
        return;
    case UnitStyle::kilowattText:
        object[key] = decimal(value) + " " + unit.large;
        return;
    case UnitStyle::commaText:
        object[key] = QString::fromStdString(decimal(value)).replace(u'.', u',').toStdString() + " " + unit.large;
        return;
    }
}

/// Energy is told in kWh in every style but the one that has a field to say Wh.
UnitStyle energyStyle(UnitStyle style) {
    switch (style) {
    case UnitStyle::watts:
        return UnitStyle::kilowatts;
    case UnitStyle::wattText:
        return UnitStyle::kilowattText;
    case UnitStyle::wattsAndUnit:
    case UnitStyle::kilowattsAndUnit:
    case UnitStyle::kilowatts:
    case UnitStyle::kilowattText:
    case UnitStyle::commaText:
        break;
    }
    return style;
}
} // namespace

void setPower(JSON& object, const std::string& key, double kilowatts, UnitStyle style) {
    setQuantity(object, key, kilowatts, style, {"W", "kW"});
}

void setEnergy(JSON& object, const std::string& key, double kilowattHours, UnitStyle style) {
    setQuantity(object, key, kilowattHours, energyStyle(style), {"Wh", "kWh"});
}

JSON withKeyStyle(JSON value, KeyStyle keys) {
    if (keys == KeyStyle::usual || !value.is_structured()) {
        return value;
    }
    if (value.is_array()) {
        for (JSON& element : value) {
            element = withKeyStyle(std::move(element), keys);
        }
        return value;
    }
    JSON result = JSON::object();
    for (auto& [key, member] : value.items()) {
        result[renamed(key)] = withKeyStyle(std::move(member), keys);
    }
    return result;
}

JSON withoutTodayEnergy(JSON value) {
    if (value.is_object()) {
        for (const char* key : todayEnergyKeys) {
            value.erase(key);
        }
    }
    if (value.is_structured()) {
        for (JSON& member : value) {
            member = withoutTodayEnergy(std::move(member));
        }
    }
    return value;
}

double rounded(double value) {
    return std::round(value * 1000) / 1000;
}

} // namespace Varnel::Simulator
