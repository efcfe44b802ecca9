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

double roundedTo(int decimals, double value) {
    const double scale = std::pow(10, decimals);
    return std::round(value * scale) / scale;
}

/// A value's parts for so many inverters, the later ones larger; the last one takes what rounding left.
std::vector<double> parts(double whole, int count, int decimals) {
    std::vector<double> result;
    double rest = whole;
    for (int i = 0; i < count - 1; ++i) {
        const double weights = count * count + count * (count - 1) / 2.0;
        result.push_back(roundedTo(decimals, whole * (count + i) / weights));
        rest -= result.back();
    }
    result.push_back(roundedTo(decimals, rest));
    return result;
}

constexpr double peakShareOfCapacity = 0.82;
constexpr double flankSteepness = 1.3;
constexpr double cloudShare = 0.07;
constexpr double cloudPeriodMinutes = 47;
constexpr int stepMinutes = 5;
} // namespace

const int builtInStationCount = static_cast<int>(std::size(stationTable));

std::vector<SimulatedStation> builtInStations(int count) {
    std::vector<SimulatedStation> stations;
    std::transform(std::begin(stationTable), std::begin(stationTable) + std::min(count, builtInStationCount),
                   std::back_inserter(stations), [](const BuiltInStation& entry) {
                       return SimulatedStation{QString::fromUtf8(entry.id), QString::fromUtf8(entry.name),
                                               entry.capacityKW};
                   });
    return stations;
}

std::vector<StationReading> inverterReadings(const StationReading& reading) {
    const int count = reading.station.inverters;
    const std::vector<double> powers = parts(reading.powerKW, count, 3 + reading.wattDecimals);
    const std::vector<double> energies = parts(reading.todayKWh, count, 3);
    const std::vector<double> capacities = parts(reading.station.capacityKW, count, 1);
    std::vector<StationReading> readings(powers.size(), reading);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        readings[i].powerKW = powers[i];
        readings[i].todayKWh = energies[i];
        readings[i].station.capacityKW = capacities[i];
    }
    return readings;
}

double SunCurve::powerKW(double capacityKW, QTime timeOfDay) {
    const double minute = timeOfDay.msecsSinceStartOfDay() / 60000.0;
    if (minute < SunCurve::sunriseMinute || minute > SunCurve::sunsetMinute) {
        return 0;
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
