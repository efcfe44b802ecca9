#include <simulator/MonitorDetail.h>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
/// Values that no sensor measured, as the inverter repeats them.
constexpr double absentReading = 6553.5;

constexpr const char* largeOnlyFlags[] = {"isShowBattery", "isShowGenset", "isMicroInverter",  "hasLayout",
                                          "hasMeter",      "isEvCharge",   "hasGridLoad",      "isParallelInverters",
                                          "isMixed",       "isStationAc",  "hasMoreInverters", "isSec1000"};

struct Sizes {
    int forecastDays;
    int registers;
};

Sizes sizesOf(DetailSize size) {
    switch (size) {
    case DetailSize::usual:
        return {1, 2};
    case DetailSize::large:
        break;
    }
    return {14, 93};
}

std::string text(const QString& value) {
    return value.toStdString();
}

std::string dateTimeText(const QDateTime& time) {
    return text(time.toString(QStringLiteral("MM/dd/yyyy HH:mm:ss")));
}

JSON information(const StationReading& reading, const QDateTime& now) {
    return {{"powerstation_id", text(reading.station.id)},
            {"time", dateTimeText(now)},
            {"date_format", "dd/MM/yyyy"},
            {"date_format_ym", "MM/yyyy"},
            {"stationname", text(reading.station.name)},
            {"address", "Example Street 1"},
            {"owner_name", nullptr},
            {"owner_phone", nullptr},
            {"battery_capacity", 0.0},
            {"turnon_time", "05/02/2021 10:11:12"},
            {"create_time", "05/02/2021 10:01:02"},
            {"capacity", reading.station.capacityKW},
            {"longitude", 13.4},
            {"latitude", 52.5},
            {"powerstation_type", "Residential"},
            {"status", reading.powerKW > 0 ? 1 : -1},
            {"is_stored", false},
            {"is_powerflow", true},
            {"charts_type", 4},
            {"time_span", -now.offsetFromUtc() / 3600.0},
            {"org_code", ""},
            {"org_name", ""}};
}

JSON keyFigures(const StationReading& reading, UnitStyle units) {
    JSON kpi = {{"month_generation", rounded(reading.todayKWh * 21)}};
    setPower(kpi, "pac", reading.powerKW, units);
    kpi["power"] = rounded(reading.todayKWh);
    kpi["total_power"] = rounded(reading.todayKWh * 2900);
    kpi["day_income"] = rounded(reading.todayKWh * 0.08);
    kpi["total_income"] = rounded(reading.todayKWh * 232);
    kpi["yield_rate"] = 0.08;
    kpi["currency"] = "EUR";
    return kpi;
}

JSON weather(int days, const QDateTime& now) {
    JSON forecast = JSON::array();
    for (int day = 0; day < days; ++day) {
        forecast.push_back({{"cond_code_d", "101"},
                            {"cond_code_n", "104"},
                            {"cond_txt_d", "Cloudy"},
                            {"cond_txt_n", "Overcast"},
                            {"date", text(now.date().addDays(day).toString(Qt::ISODate))},
                            {"hum", "61"},
                            {"pcpn", "0.0"},
                            {"pop", "7"},
                            {"pres", "1018"},
                            {"tmp_max", "24"},
                            {"tmp_min", "13"},
                            {"uv_index", "4"},
                            {"vis", "24"},
                            {"wind_deg", "243"},
                            {"wind_dir", "SW"},
                            {"wind_sc", "3-4"},
                            {"wind_spd", "17"}});
    }
    return {{"HeWeather6", JSON::array({{{"daily_forecast", std::move(forecast)},
                                         {"basic", {{"cid", "XX000000"}, {"location", "Example Town"}, {"tz", "0.0"}}},
                                         {"update", {{"loc", dateTimeText(now)}, {"utc", dateTimeText(now.toUTC())}}},
                                         {"status", "ok"}}})}};
}

/// A column of the inverter's page: names, values as text and their units.
JSON registerColumn(int count) {
    JSON column = JSON::array({{{"isHT", false}, {"key", "dmDeviceType"}, {"value", "X4-5K"}, {"unit", ""}}});
    for (int i = 1; i < count; ++i) {
        column.push_back({{"isHT", false},
                          {"key", "register" + std::to_string(i)},
                          {"value", i % 7 == 0 ? "--" : std::to_string(230 + i % 5)},
                          {"unit", "V"},
                          {"isFaultMsg", 0},
                          {"faultMsgCode", 0}});
    }
    return column;
}

JSON inverterTexts(const StationReading& reading) {
    const QString watts = QString::number(std::max(0.0, reading.powerKW) * 1000, 'f', 0);
    return {{"pw_id", text(reading.station.id)},
            {"capacity", text(QStringLiteral("%1kW").arg(reading.station.capacityKW))},
            {"model", "X4-5K"},
            {"output_voltage", "231.4/230.9/232.0V"},
            {"pac", text(watts) + "W"},
            {"eDay", text(QString::number(reading.todayKWh, 'f', 1)) + "kWh"},
            {"creationDate", nullptr},
            {"taskId", nullptr}};
}

JSON inverter(const StationReading& reading, const ReplyShape& shape, const QDateTime& now) {
    const int registers = sizesOf(shape.detailSize).registers;
    JSON result = {{"sn", "90000SIM000W0001"},
                   {"dict", {{"left", registerColumn(registers)}, {"right", registerColumn(registers)}}},
                   {"is_stored", false},
                   {"name", "Inverter 1"},
                   {"in_pac", absentReading},
                   {"out_pac", rounded(reading.powerKW * 1000)}};
    setEnergy(result, "eday", reading.todayKWh, shape.units);
    result["emonth"] = rounded(reading.todayKWh * 20);
    result["etotal"] = rounded(reading.todayKWh * 2900);
    result["status"] = reading.powerKW > 0 ? 1 : -1;
    result["turnon_time"] = "05/02/2021 10:11:12";
    result["capacity"] = reading.station.capacityKW;
    result["tempperature"] = 41.7;
    result["time"] = dateTimeText(now);
    result["d"] = inverterTexts(reading);
    result["warning"] = nullptr;
    return result;
}

JSON powerFlow(const StationReading& reading) {
    const QString pv = QString::number(std::max(0.0, reading.powerKW) * 1000, 'f', 0) + QStringLiteral("(W)");
    return {{"pv", text(pv)},   {"pvStatus", -1},  {"bettery", "0(W)"},    {"betteryStatus", 0},
            {"load", "611(W)"}, {"loadStatus", 1}, {"grid", "2337(W)"},    {"gridStatus", -1},
            {"genset", "0(W)"}, {"soc", 0},        {"hasEquipment", true}, {"socText", "--"}};
}

JSON equipment(const StationReading& reading) {
    const QString power = QString::number(reading.powerKW, 'f', 3);
    const QString energy = QString::number(reading.todayKWh, 'f', 1);
    return JSON::array({{{"type", "5"},
                         {"title", "Inverter 1"},
                         {"status", reading.powerKW > 0 ? 1 : -1},
                         {"model", nullptr},
                         {"powerGeneration", text(QStringLiteral("Power: %1kW").arg(power))},
                         {"eday", text(QStringLiteral("Generation Today: %1kWh").arg(energy))},
                         {"soc", nullptr}}});
}

void addLargeParts(JSON& data) {
    for (const char* flag : largeOnlyFlags) {
        data[flag] = false;
    }
    for (int i = 1; i <= 40; ++i) {
        data["extension" + std::to_string(i)] = nullptr;
    }
}
} // namespace

JSON monitorDetail(const StationReading& reading, const ReplyShape& shape, const QDateTime& now) {
    JSON data = {{"info", information(reading, now)},
                 {"kpi", keyFigures(reading, shape.units)},
                 {"images", JSON::array()},
                 {"weather", weather(sizesOf(shape.detailSize).forecastDays, now)},
                 {"inverter", JSON::array({inverter(reading, shape, now)})},
                 {"hjgx", {{"co2", 14.2}, {"tree", 778.0}, {"coal", 5.7}}},
                 {"homKit", {{"homeKitLimit", false}, {"sn", nullptr}}},
                 {"isTigo", false},
                 {"smuggleInfo", {{"isAllSmuggle", false}, {"isSmuggle", false}, {"descriptionText", nullptr}}},
                 {"hasPowerflow", true},
                 {"powerflow", powerFlow(reading)},
                 {"hasGridLoad", false},
                 {"soc", {{"power", 0}, {"status", 0}}},
                 {"equipment", equipment(reading)}};
    if (shape.detailSize == DetailSize::large) {
        addLargeParts(data);
    }
    if (!shape.detailTellsEnergy) {
        data = withoutTodayEnergy(std::move(data));
    }
    for (int level = 0; level < shape.nesting; ++level) {
        data = JSON{{"result", std::move(data)}};
    }
    return data;
}

} // namespace Varnel::Simulator
