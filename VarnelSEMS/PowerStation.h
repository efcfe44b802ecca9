#pragma once

#include <QString>

#include <optional>

namespace Varnel {

/// A solar installation of the account.
struct PowerStation {
    QString id; ///< as the service gives it, never empty
    std::optional<QString> name;
    std::optional<double> capacityKW; ///< rated size in kW

    bool operator==(const PowerStation&) const = default;
};

} // namespace Varnel
