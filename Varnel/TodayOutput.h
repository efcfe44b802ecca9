#pragma once

#include <VarnelAppSupport/OutputHistoryStore.h>
#include <VarnelShared/Clock.h>

#include <optional>
#include <vector>

namespace Varnel {

/// One reading of today's curve, never negative when recorded.
using OutputSample = OutputHistorySample;

/// The samples of one local calendar day for one account and station, one per reading, in time order, and their place
/// in the history file.
class TodayOutput {
public:
    static constexpr std::size_t limit = 1440;

    /// `clock` must outlive this object.
    TodayOutput(OutputHistoryStore history, const Clock& clock);

    /// Start of the day that the samples belong to; none before the first use and after `clear`.
    const std::optional<Timestamp>& dayStart() const { return m_dayStart; }
    const std::vector<OutputSample>& samples() const { return m_samples; }

    /// Every stored sample of the owner, of any day, in the file's order. Reads the file.
    std::vector<OutputSample> stored() const;

    /// Another number whenever what is stored may have become others' or another day's: `stored` is worth a new look.
    int revision() const { return m_revision; }

    /// The samples at or after the start of the day of `referenceDate`.
    std::vector<OutputSample> visible(Timestamp referenceDate) const;

    /// Whose samples these are from now on; what is in the list stays. Without an account or a station nothing is
    /// stored.
    void setOwner(const QString& account, const QString& stationID);

    /// Takes the owner's stored samples of today in place of what is in the list.
    void restore();

    /// Takes the local day of `instant`, if it is another than the list's. The samples of any other day go: all of them
    /// at midnight, few or none when the system's zone changes. Where none is left, the stored ones of that day come
    /// back: a clock that was wrong for a moment loses none.
    void rollOver(Timestamp instant);

    /// Adds a reading in kW, a negative one as 0, to the day of `at`, and stores the day. A reading less than a second
    /// away from the last one replaces it; past `limit` samples the oldest go.
    void record(double kilowatts, Timestamp at);

    /// Stores the day; an empty one is never written.
    void persist();

    /// Empties the list; what is stored stays.
    void clear();

    /// Empties the list and deletes every stored day of every account.
    void forget();

private:
    void dropOldest();

    OutputHistoryStore m_history;
    const Clock& m_clock;
    QString m_account;
    QString m_stationID;
    std::optional<Timestamp> m_dayStart;
    std::vector<OutputSample> m_samples;
    int m_revision = 0;
};

} // namespace Varnel
