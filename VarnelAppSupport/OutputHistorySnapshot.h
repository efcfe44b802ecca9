#pragma once

#include <VarnelShared/Timestamp.h>

#include <QString>

#include <vector>

namespace Varnel {

/// The power at one instant of a day.
struct OutputHistorySample {
    Timestamp timestamp;
    double kilowatts = 0;

    bool operator==(const OutputHistorySample&) const = default;
};

/// The samples of one day for one account and one station.
struct OutputHistorySnapshot {
    Timestamp dayStart; ///< the start of the local day to which the samples belong
    QString account;
    QString stationID;
    std::vector<OutputHistorySample> samples; ///< in the order in which they were given

    bool operator==(const OutputHistorySnapshot&) const = default;
};

} // namespace Varnel
