#include <Varnel/TodayOutput.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/PowerReading.h>
#include <VarnelShared/Text.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

namespace Varnel {

TodayOutput::TodayOutput(OutputHistoryStore history, const Clock& clock)
    : m_history(std::move(history))
    , m_clock(clock) {}

std::vector<OutputSample> TodayOutput::stored() const {
    std::vector<OutputSample> samples;
    if (!m_account.isEmpty() && !m_stationID.isEmpty()) {
        for (const OutputHistorySnapshot& day : m_history.loadAllSnapshots(m_account, m_stationID)) {
            samples.insert(samples.end(), day.samples.begin(), day.samples.end());
        }
    }
    return samples;
}

std::vector<OutputSample> TodayOutput::visible(Timestamp referenceDate) const {
    const Timestamp dayStart = Calendar::startOfDay(referenceDate);
    std::vector<OutputSample> samples;
    std::copy_if(m_samples.begin(), m_samples.end(), std::back_inserter(samples),
                 [dayStart](const OutputSample& sample) { return sample.timestamp >= dayStart; });
    return samples;
}

void TodayOutput::setOwner(const QString& account, const QString& stationID) {
    m_account = trimmed(account);
    m_stationID = trimmed(stationID);
}

void TodayOutput::restore() {
    clear();
    rollOver(m_clock.now());
}

void TodayOutput::rollOver(Timestamp instant) {
    const Timestamp dayStart = Calendar::startOfDay(instant);
    if (m_dayStart == dayStart) {
        return;
    }
    m_dayStart = dayStart;
    ++m_revision;
    // After midnight none is left; where only the zone has changed, the day's earlier samples are.
    std::erase_if(m_samples,
                  [instant](const OutputSample& sample) { return !Calendar::isSameDay(sample.timestamp, instant); });
    if (!m_samples.empty() || m_account.isEmpty() || m_stationID.isEmpty()) {
        return;
    }
    if (auto snapshot = m_history.loadSnapshot(dayStart, m_account, m_stationID)) {
        m_samples = std::move(snapshot->samples);
        // No reading is above, so a file that says so was not written by this program.
        std::erase_if(m_samples,
                      [](const OutputSample& sample) { return std::abs(sample.kilowatts) > largestPowerKW; });
        dropOldest();
    }
}

void TodayOutput::record(double kilowatts, Timestamp at) {
    rollOver(at);
    const OutputSample sample{at, std::max(kilowatts, 0.0)};
    constexpr Seconds together(1.0);
    if (!m_samples.empty() && std::chrono::abs(at - m_samples.back().timestamp) < together) {
        m_samples.back() = sample;
    } else {
        m_samples.push_back(sample);
    }
    dropOldest();
    persist();
}

void TodayOutput::persist() {
    if (m_account.isEmpty() || m_stationID.isEmpty() || !m_dayStart || m_samples.empty()) {
        return;
    }
    m_history.saveSnapshot({*m_dayStart, m_account, m_stationID, m_samples}, m_clock.now());
}

void TodayOutput::clear() {
    ++m_revision;
    m_dayStart.reset();
    m_samples.clear();
}

void TodayOutput::forget() {
    clear();
    m_history.clear();
}

void TodayOutput::dropOldest() {
    if (m_samples.size() > limit) {
        m_samples.erase(m_samples.begin(), m_samples.end() - limit);
    }
}

} // namespace Varnel
