#pragma once

#include <cstdint>
#include <vector>

namespace Varnel {

/// What the readings say about the day's production.
enum class ProductionNotificationEvent {
    productionStarted,              ///< the power turned positive after a reading that was not
    productionEnded,                ///< the power stayed negative for more readings in a row than are tolerated
    productionRiseAboveOneKilowatt, ///< the power exceeded the threshold for the first time in this session
};

/// Turns successive power readings into production events. A production session lasts from a positive reading to the
/// end event or a reset.
class ProductionNotificationEvaluator {
public:
    /// Production ends with the negative reading that follows `endAfterConsecutiveNegativeFetches` others in a row; it
    /// rises once per session above `riseThresholdKilowatts`.
    ProductionNotificationEvaluator(std::int64_t endAfterConsecutiveNegativeFetches, double riseThresholdKilowatts);

    /// Forgets every reading. No event follows from that.
    void reset() { m_state = {}; }

    /// The events of one reading, in order: none, one, or a start and a rise. A production that runs already at the
    /// first reading is adopted without a start, and without a rise if it is above the threshold. A NaN is no positive
    /// reading; within a session it neither counts as negative nor breaks a run of negative readings.
    std::vector<ProductionNotificationEvent> evaluate(double currentPowerKilowatts);

private:
    using Events = std::vector<ProductionNotificationEvent>;

    struct State {
        bool isProductionActive = false;
        std::int64_t consecutiveNegativeFetches = 0;
        bool didNotifyRiseThresholdInCurrentSession = false;
        bool hasObservedNonPositivePowerSinceReset = false;
    };

    Events start(double kilowatts);
    bool endsProduction(double kilowatts);

    std::int64_t m_endAfterConsecutiveNegativeFetches;
    double m_riseThresholdKilowatts;
    State m_state;
};

} // namespace Varnel
