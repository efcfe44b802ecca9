#include <VarnelNotifications/ProductionNotificationEvaluator.h>

namespace Varnel {

ProductionNotificationEvaluator::ProductionNotificationEvaluator(std::int64_t endAfterConsecutiveNegativeFetches,
                                                                 double riseThresholdKilowatts)
    : m_endAfterConsecutiveNegativeFetches(endAfterConsecutiveNegativeFetches)
    , m_riseThresholdKilowatts(riseThresholdKilowatts) {}

std::vector<ProductionNotificationEvent> ProductionNotificationEvaluator::evaluate(double currentPowerKilowatts) {
    const bool isPositive = currentPowerKilowatts > 0;
    if (!isPositive) {
        m_state.hasObservedNonPositivePowerSinceReset = true;
    }
    Events events;
    if (m_state.isProductionActive) {
        if (endsProduction(currentPowerKilowatts)) {
            return {ProductionNotificationEvent::productionEnded};
        }
    } else if (isPositive) {
        events = start(currentPowerKilowatts);
    } else {
        return {};
    }
    if (m_riseThresholdKilowatts < currentPowerKilowatts && !m_state.didNotifyRiseThresholdInCurrentSession) {
        m_state.didNotifyRiseThresholdInCurrentSession = true;
        events.push_back(ProductionNotificationEvent::productionRiseAboveOneKilowatt);
    }
    return events;
}

ProductionNotificationEvaluator::Events ProductionNotificationEvaluator::start(double kilowatts) {
    m_state.isProductionActive = true;
    m_state.consecutiveNegativeFetches = 0;
    if (m_state.hasObservedNonPositivePowerSinceReset) {
        m_state.didNotifyRiseThresholdInCurrentSession = false;
        return {ProductionNotificationEvent::productionStarted};
    }
    m_state.didNotifyRiseThresholdInCurrentSession = m_riseThresholdKilowatts < kilowatts;
    return {};
}

bool ProductionNotificationEvaluator::endsProduction(double kilowatts) {
    if (kilowatts < 0) {
        if (++m_state.consecutiveNegativeFetches > m_endAfterConsecutiveNegativeFetches) {
            m_state.isProductionActive = false;
            m_state.consecutiveNegativeFetches = 0;
            m_state.didNotifyRiseThresholdInCurrentSession = false;
            return true;
        }
    } else if (kilowatts >= 0) {
        m_state.consecutiveNegativeFetches = 0;
    }
    return false;
}

} // namespace Varnel
