#pragma once

#include <QString>

namespace Varnel::Simulator {

/// Why the simulator cannot do what it was told, as one sentence.
struct SimulatorError {
    QString description;

    QString localizedDescription() const { return description; }
    bool operator==(const SimulatorError&) const = default;
};

} // namespace Varnel::Simulator
