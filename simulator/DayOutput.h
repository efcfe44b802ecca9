#pragma once

#include <simulator/ReplyShape.h>

#include <QDate>
#include <QTime>

#include <functional>

namespace Varnel::Simulator {

/// One day of a station.
struct DayRecord {
    QDate date;
    QTime until;                          ///< samples later than this do not exist yet
    std::function<double(QTime)> powerKW; ///< the power at a time of day
    double energyKWh = 0;                 ///< made until then
};

/// The data of a day call: a sample every five minutes, or the total alone, in the form that `shape` asks for.
JSON dayOutput(const DayRecord& day, const ReplyShape& shape);

} // namespace Varnel::Simulator
