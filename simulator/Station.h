#pragma once

#include <QString>
#include <QTime>

#include <vector>

namespace Varnel::Simulator {

/// One station of the simulated account.
struct SimulatedStation {
    QString id;
    QString name;
    double capacityKW = 0;
    int inverters = 1;

    bool operator==(const SimulatedStation&) const = default;
};

/// What a station measures at one moment.
struct StationReading {
    SimulatedStation station;
    double powerKW = 0; ///< may be negative while there is no sun
    double todayKWh = 0;
    int wattDecimals = 0; ///< to which the power is known
};

/// What each inverter of the station measures. The parts differ, are as exact as the whole and add up to it.
std::vector<StationReading> inverterReadings(const StationReading& reading);

/// The first `count` of the built-in stations, all of different sizes.
std::vector<SimulatedStation> builtInStations(int count);

/// How many stations there are to choose from.
extern const int builtInStationCount;

/// A day of sun with a few thin clouds, the same every day. Before sunrise and after sunset there is none.
namespace SunCurve {

inline constexpr int sunriseMinute = 6 * 60;
inline constexpr int sunsetMinute = 20 * 60;

/// The power in kW at a time of day of a station of this size.
double powerKW(double capacityKW, QTime timeOfDay);

/// The energy in kWh made from midnight to a time of day.
double energyKWh(double capacityKW, QTime until);

} // namespace SunCurve

} // namespace Varnel::Simulator
