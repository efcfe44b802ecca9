#include <simulator/Behaviour.h>

#include <algorithm>
#include <iterator>

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

Behaviour standardBehaviour() {
    Behaviour behaviour;
    behaviour.stations = builtInStations(2);
    return behaviour;
}

} // namespace Varnel::Simulator
