#include <simulator/Station.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace Varnel::Simulator {

namespace {
struct BuiltInStation {
    const char* id;
    const char* name;
    double capacityKW;
};

constexpr BuiltInStation stationTable[] = {
    {"6f1c2a34-58be-4d0e-9a57-2b8c41d7e001", "Sunny Roof", 8.2},
    {"6f1c2a34-58be-4d0e-9a57-2b8c41d7e002", "Garden Shed", 3.0},
    {"6f1c2a34-58be-4d0e-9a57-2b8c41d7e003", "Old Barn", 24.5},
    {"6f1c2a34-58be-4d0e-9a57-2b8c41d7e004", "Scheune Süd", 11.7},
};

constexpr double peakShareOfCapacity = 0.82;
constexpr double flankSteepness = 1.3;
constexpr double cloudShare = 0.07;
constexpr double cloudPeriodMinutes = 47;
constexpr int stepMinutes = 5;
} // namespace

const std::size_t builtInStationCount = std::size(stationTable);

std::vector<SimulatedStation> builtInStations(std::size_t count) {
    std::vector<SimulatedStation> stations;
    std::transform(
        std::begin(stationTable), std::begin(stationTable) + std::min(count, builtInStationCount),
        std::back_inserter(stations), [](const BuiltInStation& entry) {
            return SimulatedStation{QString::fromUtf8(entry.id), QString::fromUtf8(entry.name), entry.capacityKW};
        });
    return stations;
}

double SunCurve::powerKW(double capacityKW, QTime timeOfDay) {
    const double minute = timeOfDay.msecsSinceStartOfDay() / 60000.0;
    if (minute < SunCurve::sunriseMinute || minute > SunCurve::sunsetMinute) {
        return standbyKW;
    }
    const double height =
        std::sin(std::numbers::pi * (minute - sunriseMinute) / static_cast<double>(sunsetMinute - sunriseMinute));
    const double clouds = cloudShare * (1 + std::sin(2 * std::numbers::pi * minute / cloudPeriodMinutes)) / 2;
    return capacityKW * peakShareOfCapacity * std::pow(std::max(0.0, height), flankSteepness) * (1 - clouds);
}

double SunCurve::energyKWh(double capacityKW, QTime until) {
    double energy = 0;
    for (int minute = 0; minute < until.msecsSinceStartOfDay() / 60000; minute += stepMinutes) {
        const QTime sample = QTime::fromMSecsSinceStartOfDay(minute * 60000);
        energy += std::max(0.0, powerKW(capacityKW, sample)) * stepMinutes / 60.0;
    }
    return energy;
}

} // namespace Varnel::Simulator
