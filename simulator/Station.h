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

    bool operator==(const SimulatedStation&) const = default;
};

/// What a station measures at one moment.
struct StationReading {
    SimulatedStation station;
    double powerKW = 0; ///< negative while the inverter draws its standby power
    double todayKWh = 0;
};

/// The first `count` of the built-in stations, all of different sizes.
std::vector<SimulatedStation> builtInStations(std::size_t count);

/// How many stations there are to choose from.
extern const std::size_t builtInStationCount;

/// A day of sun with a few thin clouds, the same every day. Before sunrise and after sunset the inverter draws its
/// standby power.
namespace SunCurve {

inline constexpr double standbyKW = -0.008;
inline constexpr int sunriseMinute = 6 * 60;
inline constexpr int sunsetMinute = 20 * 60;

/// The power in kW at a time of day of a station of this size.
double powerKW(double capacityKW, QTime timeOfDay);

/// The energy in kWh made from midnight to a time of day; standby does not count.
double energyKWh(double capacityKW, QTime until);

} // namespace SunCurve

} // namespace Varnel::Simulator
