#pragma once

#include <QString>

namespace Varnel::Simulator {

/// One station of the simulated account.
struct SimulatedStation {
    QString id;
    QString name;
    double capacityKW = 0;

    bool operator==(const SimulatedStation&) const = default;
};

} // namespace Varnel::Simulator
