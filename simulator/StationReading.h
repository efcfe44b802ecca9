#pragma once

#include <simulator/SimulatedStation.h>

namespace Varnel::Simulator {

/// What a station measures at one moment.
struct StationReading {
    SimulatedStation station;
    double powerKW = 0; ///< negative while the inverter draws its standby power
    double todayKWh = 0;
};

} // namespace Varnel::Simulator
