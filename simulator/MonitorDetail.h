#pragma once

#include <simulator/ReplyShape.h>
#include <simulator/StationReading.h>

#include <QDateTime>

namespace Varnel::Simulator {

/// The data of a monitor detail, the same in both families: the station, its key figures, the weather, the inverter
/// with its registers and texts, the power flow, and the flags and nulls among which the real ones are found.
JSON monitorDetail(const StationReading& reading, const ReplyShape& shape, const QDateTime& now);

} // namespace Varnel::Simulator
