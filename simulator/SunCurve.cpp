#include <simulator/SunCurve.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Varnel::Simulator::SunCurve {

namespace {
constexpr double peakShareOfCapacity = 0.82;
constexpr double flankSteepness = 1.3;
constexpr double cloudShare = 0.07;
constexpr double cloudPeriodMinutes = 47;
constexpr int stepMinutes = 5;
} // namespace

double powerKW(double capacityKW, QTime timeOfDay) {
    const double minute = timeOfDay.msecsSinceStartOfDay() / 60000.0;
    if (minute < sunriseMinute || minute > sunsetMinute) {
        return standbyKW;
    }
    const double height =
        std::sin(std::numbers::pi * (minute - sunriseMinute) / static_cast<double>(sunsetMinute - sunriseMinute));
    const double clouds = cloudShare * (1 + std::sin(2 * std::numbers::pi * minute / cloudPeriodMinutes)) / 2;
    return capacityKW * peakShareOfCapacity * std::pow(std::max(0.0, height), flankSteepness) * (1 - clouds);
}

double energyKWh(double capacityKW, QTime until) {
    double energy = 0;
    for (int minute = 0; minute < until.msecsSinceStartOfDay() / 60000; minute += stepMinutes) {
        const QTime sample = QTime::fromMSecsSinceStartOfDay(minute * 60000);
        energy += std::max(0.0, powerKW(capacityKW, sample)) * stepMinutes / 60.0;
    }
    return energy;
}

} // namespace Varnel::Simulator::SunCurve
