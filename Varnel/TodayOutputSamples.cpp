#include <Varnel/TodayOutputSamples.h>

#include <VarnelShared/Calendar.h>

#include <algorithm>
#include <chrono>

namespace Varnel {

void TodayOutputSamples::resetIfNeeded(Timestamp instant) {
    const Timestamp dayStart = Calendar::startOfDay(instant);
    if (m_dayStart == dayStart) {
        return;
    }
    m_dayStart = dayStart;
    // After midnight none is left; where only the zone has changed, the day's earlier samples are.
    std::erase_if(m_samples,
                  [instant](const OutputSample& sample) { return !Calendar::isSameDay(sample.timestamp, instant); });
}

void TodayOutputSamples::record(double kilowatts, Timestamp at) {
    resetIfNeeded(at);
    const OutputSample sample{at, std::max(kilowatts, 0.0)};
    constexpr Seconds together(1.0);
    if (!m_samples.empty() && std::chrono::abs(at - m_samples.back().timestamp) < together) {
        m_samples.back() = sample;
    } else {
        m_samples.push_back(sample);
    }
    dropOldest();
}

void TodayOutputSamples::restore(Timestamp dayStart, std::vector<OutputSample> samples) {
    m_dayStart = dayStart;
    m_samples = std::move(samples);
    dropOldest();
}

void TodayOutputSamples::clear() {
    m_dayStart.reset();
    m_samples.clear();
}

std::vector<OutputSample> TodayOutputSamples::visible(Timestamp referenceDate) const {
    const Timestamp dayStart = Calendar::startOfDay(referenceDate);
    std::vector<OutputSample> samples;
    std::copy_if(m_samples.begin(), m_samples.end(), std::back_inserter(samples),
                 [dayStart](const OutputSample& sample) { return sample.timestamp >= dayStart; });
    return samples;
}

void TodayOutputSamples::dropOldest() {
    if (m_samples.size() > limit) {
        m_samples.erase(m_samples.begin(), m_samples.end() - limit);
    }
}

} // namespace Varnel
