#pragma once

#include <VarnelStatusMenu/Window/OutputDay.h>

#include <QByteArray>

#include <functional>

namespace Varnel {

/// What is known of today at one moment.
struct OutputOfToday {
    Timestamp now;
    Seconds interval{0};             ///< between two polls
    OutputCurve readings;            ///< of the day of `now`, as recorded
    OutputCurve ofService;           ///< the service's own curve of the day; empty until it has come
    std::optional<double> energyKWh; ///< by the service's own count
    int daysRevision = 0;            ///< another one where earlier days may have become others
};

/// Where the output window gets what it shows. A port of the controller.
class OutputSource {
public:
    OutputSource() = default;
    OutputSource(const OutputSource&) = delete;
    OutputSource& operator=(const OutputSource&) = delete;
    virtual ~OutputSource() = default;

    virtual OutputOfToday today() const = 0;

    /// Every stored reading of the account and station, in any order. Reads a file.
    virtual OutputCurve storedReadings() const = 0;

    /// The top of the value axis in kW over these powers, by the rule of the menu's chart.
    virtual double axisTopKW(const std::vector<double>& kilowatts) const = 0;

    /// Asks the service for its curve of today and calls `arrived` where one comes, with it in `today`. Nothing is
    /// asked less than an interval after the last time; no failure is told. False where nobody can be asked at the
    /// moment: then the wish may be repeated.
    virtual bool requestServiceCurve(std::function<void()> arrived) = 0;

    /// The window's size and place as it was last kept; empty before.
    virtual QByteArray windowGeometry() const = 0;
    virtual void keepWindowGeometry(const QByteArray& geometry) = 0;
};

} // namespace Varnel
