#pragma once

#include <QTime>

/// A day of sun with a few thin clouds, the same every day. Before sunrise and after sunset the inverter draws its
/// standby power.
namespace Varnel::Simulator::SunCurve {

inline constexpr double standbyKW = -0.008;
inline constexpr int sunriseMinute = 6 * 60;
inline constexpr int sunsetMinute = 20 * 60;

/// The power in kW at a time of day of a station of this size.
double powerKW(double capacityKW, QTime timeOfDay);

/// The energy in kWh made from midnight to a time of day; standby does not count.
double energyKWh(double capacityKW, QTime until);

} // namespace Varnel::Simulator::SunCurve
