#pragma once

#include <VarnelShared/Timestamp.h>

namespace Varnel {

/// Tells the current time. A port: tests turn it by hand.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    virtual Timestamp now() const = 0;
};

/// The system's wall clock.
class SystemClock final : public Clock {
public:
    Timestamp now() const override;
};

} // namespace Varnel
