#include <simulator/StationList.h>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
using EntryMaker = JSON (*)(const StationReading&, UnitStyle);

JSON portalEntry(const StationReading& reading, UnitStyle units) {
    const auto& [station, powerKW, todayKWh] = reading;
    JSON entry = {{"powerstation_id", station.id.toStdString()},
                  {"stationname", station.name.toStdString()},
                  {"first_letter", station.name.left(1).toStdString()},
                  {"adcode", ""},
                  {"location", "Example Street 1"},
                  {"status", powerKW > 0 ? 1 : -1},
                  {"capacity", station.capacityKW}};
    setPower(entry, "pac", powerKW, units);
    setEnergy(entry, "eday", todayKWh, units);
    entry["emonth"] = rounded(todayKWh * 21);
    entry["etotal"] = rounded(todayKWh * 2900);
    entry["eday_income"] = rounded(todayKWh * 0.08);
    // Power per kW of capacity: not the power of the station.
    entry["pac_kw"] = station.capacityKW > 0 ? rounded(powerKW / station.capacityKW) : 0.0;
    entry["currency"] = "EUR";
    entry["weather"] = {{"HeWeather6", JSON::array({{{"now", {{"tmp", "17"}, {"pcpn", "0.0"}, {"wind_spd", 12}}}}})}};
    return entry;
}

JSON tokenEntry(const StationReading& reading, UnitStyle units) {
    JSON entry = {{"powerStationId", reading.station.id.toStdString()},
                  {"stationName", reading.station.name.toStdString()},
                  {"capacity", reading.station.capacityKW},
                  {"status", reading.powerKW > 0 ? 1 : -1}};
    setPower(entry, "pac", reading.powerKW, units);
    return entry;
}

JSON pageOf(const std::vector<StationReading>& readings, ListPage page, UnitStyle units, EntryMaker entry) {
    JSON list = JSON::array();
    const std::size_t size = static_cast<std::size_t>(std::max(0, page.size));
    const std::size_t begin = static_cast<std::size_t>(std::max(0, page.index - 1)) * size;
    for (std::size_t i = begin; i < std::min(begin + size, readings.size()); ++i) {
        list.push_back(entry(readings[i], units));
    }
    return {{"record", readings.size()}, {"list", std::move(list)}};
}
} // namespace

JSON portalStationList(const std::vector<StationReading>& readings, ListPage page, UnitStyle units) {
    return pageOf(readings, page, units, portalEntry);
}

JSON tokenStationList(const std::vector<StationReading>& readings, ListPage page, UnitStyle units) {
    return pageOf(readings, page, units, tokenEntry);
}

} // namespace Varnel::Simulator
