#pragma once

namespace Varnel {

/// What the readings say about the day's production.
enum class ProductionNotificationEvent {
    productionStarted,              ///< the power turned positive after a reading that was not
    productionEnded,                ///< the power stayed negative for more readings in a row than are tolerated
    productionRiseAboveOneKilowatt, ///< the power exceeded the threshold for the first time in this session
};

} // namespace Varnel
