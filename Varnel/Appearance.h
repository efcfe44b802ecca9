#pragma once

#include <functional>
#include <memory>

namespace Varnel {

/// The system's light or dark appearance. A port.
class Appearance {
public:
    /// Keeps an observation alive; destroying it ends the observation.
    class Observation {
    public:
        Observation() = default;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        virtual ~Observation() = default;
    };

    Appearance() = default;
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;
    virtual ~Appearance() = default;

    virtual bool isDark() const = 0;

    /// Calls `onChange` after each change of `isDark`, as long as the observation lives.
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(std::function<void()> onChange) = 0;
};

} // namespace Varnel
