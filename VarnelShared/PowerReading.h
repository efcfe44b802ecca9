#pragma once

#include <VarnelShared/Timestamp.h>

#include <QString>

#include <optional>

namespace Varnel {

/// In kW. No house has more: a number beyond it, in either direction, is passed over as no number at all.
inline constexpr double largestPowerKW = 1e6;

/// One successful reading of a power station.
struct PowerReading {
    double kilowatts = 0;                 ///< current power in kW; slightly negative while the inverter stands by
    std::optional<double> todayOutputKWh; ///< energy produced today in kWh; none when the service did not report it
    QString stationID;                    ///< the station that was read
    Timestamp capturedAt;                 ///< when the fetch completed

    bool operator==(const PowerReading&) const = default;
};

} // namespace Varnel
