#pragma once

#include <VarnelAppSupport/OutputHistoryArchive.h>

#include <optional>
#include <vector>

namespace Varnel {

/// One reading of today's curve, never negative when recorded.
using OutputSample = OutputHistorySample;

/// The samples of one local calendar day, one per reading, in time order.
class TodayOutputSamples {
public:
    static constexpr std::size_t limit = 1440;

    /// Start of the day that the samples belong to; none before the first use and after `clear`.
    const std::optional<Timestamp>& dayStart() const { return m_dayStart; }
    const std::vector<OutputSample>& samples() const { return m_samples; }

    /// Takes the local day of `instant`, if it is another than the list's, and drops the samples of any other: all of
    /// them at midnight, few or none when the system's zone changes.
    void resetIfNeeded(Timestamp instant);

    /// Adds a reading in kW, a negative one as 0, to the day of `at`. A reading less than a second away from the last
    /// one replaces it; past `limit` samples the oldest go.
    void record(double kilowatts, Timestamp at);

    /// Takes the samples of a stored day; of more than `limit` the newest are kept.
    void restore(Timestamp dayStart, std::vector<OutputSample> samples);

    void clear();

    /// The samples at or after the start of the day of `referenceDate`.
    std::vector<OutputSample> visible(Timestamp referenceDate) const;

private:
    void dropOldest();

    std::optional<Timestamp> m_dayStart;
    std::vector<OutputSample> m_samples;
};

} // namespace Varnel
