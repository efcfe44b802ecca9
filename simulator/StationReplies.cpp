#include <simulator/StationReplies.h>

#include <simulator/Reply.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Varnel::Simulator {

namespace {
constexpr int sampleMinutes = 5;
constexpr int samplesPerDay = 24 * 60 / sampleMinutes;

constexpr std::pair<const char*, const char*> renamedKeys[] = {
    {"pac", "Current_Power"},    {"pac_unit", "Current_Power_unit"},
    {"eday", "Today_Energy"},    {"eday_unit", "Today_Energy_unit"},
    {"eDay", "todayEnergy"},     {"capacity", "installedCapacity"},
    {"powerstation_id", "pwId"}, {"powerStationId", "pwId"},
    {"stationname", "pwName"},   {"stationName", "pwName"},
};

std::string renamed(const std::string& key) {
    const auto* const row = std::find_if(std::begin(renamedKeys), std::end(renamedKeys),
                                         [&key](const auto& names) { return key == names.first; });
    return row == std::end(renamedKeys) ? key : row->second;
}

/// The same tree with the names that `keys` asks for.
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

/// Rounded to three decimals, as the service writes numbers.
double rounded(double value) {
    return std::round(value * 1000) / 1000;
}

/// Without what is left over from calculating with a power or an energy.
double clean(double value) {
    return std::round(value * 1e6) / 1e6;
}

std::string fixed(double value, int decimals) {
    return QString::number(value, 'f', decimals).toStdString();
}

/// Twelve significant digits at most, without an exponent for what a station measures.
QString decimal(double value) {
    return QString::number(clean(value), 'g', 12);
}

struct Unit {
    const char* small; ///< a thousandth of `large`
    const char* large;
};

/// Sets the value `name` and, with the styles that have one, the value of the unit field beside it.
void setQuantity(JSON& values, const std::string& name, double value, UnitStyle style, Unit unit) {
    switch (style) {
    case UnitStyle::wattsAndUnit:
        values[name + "Unit"] = unit.small;
        [[fallthrough]];
    case UnitStyle::watts:
        values[name] = clean(value * 1000);
        return;
    case UnitStyle::kilowattsAndUnit:
        values[name + "Unit"] = unit.large;
        [[fallthrough]];
    case UnitStyle::kilowatts:
        values[name] = clean(value);
        return;
    case UnitStyle::wattText:
        values[name] = decimal(value * 1000).toStdString() + " " + unit.small;
        return;
    case UnitStyle::kilowattText:
        values[name] = decimal(value).toStdString() + " " + unit.large;
        return;
    case UnitStyle::commaText:
        values[name] = decimal(value).replace(u'.', u',').toStdString() + " " + unit.large;
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

/// Whether a style speaks of kilowatts: then the texts beside its numbers do too.
bool isInKilowatts(UnitStyle style) {
    switch (style) {
    case UnitStyle::wattsAndUnit:
    case UnitStyle::watts:
    case UnitStyle::wattText:
        return false;
    case UnitStyle::kilowattsAndUnit:
    case UnitStyle::kilowatts:
    case UnitStyle::kilowattText:
    case UnitStyle::commaText:
        break;
    }
    return true;
}

std::string dateTimeText(const QDateTime& time) {
    return time.toString(QStringLiteral("MM/dd/yyyy HH:mm:ss")).toStdString();
}

/// What every reply about a station is filled with, or about one of its inverters.
JSON stationValues(const StationReading& reading, UnitStyle units) {
    const auto& [station, powerKW, todayKWh, wattDecimals] = reading;
    JSON values = {
        {"stationID", station.id.toStdString()},
        {"stationName", station.name.toStdString()},
        {"firstLetter", station.name.left(1).toStdString()},
        {"capacityKW", station.capacityKW},
        {"status", powerKW > 0 ? 1 : -1},
        {"watts", clean(powerKW * 1000)},
        {"producedWatts", fixed(std::max(0.0, powerKW) * 1000, 0)},
        {"kilowattsText", fixed(powerKW, 3)},
        {"powerText", isInKilowatts(units) ? decimal(powerKW).toStdString() + "kW" : fixed(powerKW * 1000, 0) + "W"},
        {"generationText", "Generation Today: " + fixed(todayKWh, 1) + "kWh"},
        {"todayKWh", rounded(todayKWh)},
        {"monthKWh", rounded(todayKWh * 21)},
        {"totalKWh", rounded(todayKWh * 2900)},
        {"income", rounded(todayKWh * 0.08)},
        {"totalIncome", rounded(todayKWh * 232)},
        // Power per kW of capacity: not the power of the station.
        {"powerPerCapacity", station.capacityKW > 0 ? rounded(powerKW / station.capacityKW) : 0.0}};
    setQuantity(values, "power", powerKW, units, {"W", "kW"});
    setQuantity(values, "energy", rounded(todayKWh), energyStyle(units), {"Wh", "kWh"});
    return values;
}

/// Leaves out what the shape does not tell in a monitor detail.
JSON told(JSON values, const ReplyShape& shape) {
    if (!shape.detailTellsEnergy) {
        for (const char* name : {"energy", "energyUnit", "generationText"}) {
            values.erase(name);
        }
    }
    if (!shape.powerTexts) {
        values.erase("powerText");
    }
    return values;
}

JSON inverters(const StationReading& reading, const ReplyShape& shape) {
    JSON list = JSON::array();
    for (const StationReading& each : inverterReadings(reading)) {
        JSON values = told(stationValues(each, shape.units), shape);
        values["number"] = list.size() + 1;
        list.push_back(std::move(values));
    }
    return list;
}

JSON forecast(int days, QDate today) {
    JSON list = JSON::array();
    for (int day = 0; day < days; ++day) {
        list.push_back({{"date", today.addDays(day).toString(Qt::ISODate).toStdString()}});
    }
    return list;
}

/// The rows of a column on the inverter's page.
JSON registers(int count) {
    JSON list = JSON::array();
    for (int i = 1; i < count; ++i) {
        list.push_back({{"register", i}, {"volts", i % 7 == 0 ? "--" : std::to_string(230 + i % 5)}});
    }
    return list;
}

QTime timeOfSample(int index) {
    return QTime::fromMSecsSinceStartOfDay(index * sampleMinutes * 60000);
}

double wattsAt(const DayRecord& day, QTime time) {
    return clean(std::max(0.0, day.powerKW(time)) * 1000);
}

JSON samples(const DayRecord& day) {
    JSON list = JSON::array();
    const QString date = day.date.toString(QStringLiteral("MM/dd/yyyy"));
    for (int i = 0; i < samplesPerDay && timeOfSample(i) <= day.until; ++i) {
        const QTime time = timeOfSample(i);
        // The service puts a stray space between date and time now and then.
        const QString space = i % 50 == 7 ? QStringLiteral("  ") : QStringLiteral(" ");
        list.push_back({{"date", (date + space + time.toString(QStringLiteral("HH:mm:ss"))).toStdString()},
                        {"watts", wattsAt(day, time)}});
    }
    return list;
}

/// The points of the whole day: those that do not exist yet are null.
JSON points(const DayRecord& day) {
    constexpr double loadShare = 0.3;
    JSON list = JSON::array();
    for (int i = 0; i < samplesPerDay; ++i) {
        const QTime time = timeOfSample(i);
        const bool exists = time <= day.until;
        list.push_back({{"time", time.toString(QStringLiteral("HH:mm")).toStdString()},
                        {"watts", exists ? JSON(wattsAt(day, time)) : JSON(nullptr)},
                        {"loadWatts", exists ? JSON(rounded(wattsAt(day, time) * loadShare)) : JSON(nullptr)}});
    }
    return list;
}

JSON filledDay(const DayRecord& day, const ReplyShape& shape) {
    JSON values;
    switch (shape.dayForm) {
    case DayForm::samples:
        values["samples"] = samples(day);
        setQuantity(values, "energy", rounded(day.energyKWh), energyStyle(shape.units), {"Wh", "kWh"});
        return filledReply("day-samples.json", values);
    case DayForm::lines:
        return filledReply("day-lines.json", {{"points", points(day)}, {"energyText", fixed(day.energyKWh, 1)}});
    case DayForm::totals:
        break;
    }
    return filledReply("day-totals.json", {{"date", day.date.toString(QStringLiteral("MM/dd/yyyy")).toStdString()},
                                           {"todayKWh", rounded(day.energyKWh)},
                                           {"income", rounded(day.energyKWh * 0.08)}});
}
} // namespace

JSON stationList(const std::vector<StationReading>& readings, ListPage page, Family family, const ReplyShape& shape) {
    JSON stations = JSON::array();
    const std::size_t size = static_cast<std::size_t>(std::max(0, page.size));
    const std::size_t begin = static_cast<std::size_t>(std::max(0, page.index - 1)) * size;
    for (std::size_t i = begin; i < std::min(begin + size, readings.size()); ++i) {
        stations.push_back(stationValues(readings[i], shape.units));
    }
    const char* file = family == Family::token ? "station-list-token.json" : "station-list-portal.json";
    const JSON values = {{"record", readings.size()}, {"stations", std::move(stations)}};
    return withKeyStyle(filledReply(file, values), shape.keys);
}

JSON monitorDetail(const StationReading& reading, const ReplyShape& shape, const QDateTime& now) {
    const bool isLarge = shape.detailSize == DetailSize::large;
    JSON values = told(stationValues(reading, shape.units), shape);
    values["time"] = dateTimeText(now);
    values["timeUTC"] = dateTimeText(now.toUTC());
    values["timeSpan"] = -now.offsetFromUtc() / 3600.0;
    values["forecast"] = forecast(isLarge ? 14 : 1, now.date());
    values["registers"] = registers(isLarge ? 93 : 2);
    values["inverters"] = inverters(reading, shape);
    JSON data = filledReply("monitor-detail.json", values);
    if (isLarge) {
        data.update(filledReply("monitor-detail-more-members.json"));
    }
    for (int level = 0; level < shape.nesting; ++level) {
        data = JSON{{"result", std::move(data)}};
    }
    return withKeyStyle(std::move(data), shape.keys);
}

JSON dayOutput(const DayRecord& day, const ReplyShape& shape) {
    return withKeyStyle(filledDay(day, shape), shape.keys);
}

} // namespace Varnel::Simulator
