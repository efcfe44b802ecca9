#pragma once

#include <VarnelAppSupport/OutputHistoryArchive.h>
#include <VarnelShared/Result.h>

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace Varnel {

/// Keeps each day's power samples, by account and station, in the one file "output-history.json". The file is a cache
/// and the only state: every call reads it whole, and no call reports a failure. A file that is missing, unreadable or
/// not a history counts as empty; a save that fails leaves the old file as it is and is logged once per cause.
///
/// The former file is kept as "….damaged" when it is first written over though it was no history (or no regular file,
/// or larger than 8 MiB: thirty days of a reading every five minutes from fourteen stations), and when more than two
/// days at once would be dropped, as by a clock that is far ahead.
///
/// Days are those of the local calendar in the zone of the moment. Accounts and stations are compared exactly.
class OutputHistoryStore {
public:
    static constexpr int defaultRetentionDays = 30;

    /// The file stands in the folder `bundleIdentifier` of `applicationSupportFolder`, the user's data folder; an
    /// empty one stands for the temporary folder. `retentionDays` below 1 counts as 1. Touches no file.
    OutputHistoryStore(const QString& applicationSupportFolder, const QString& bundleIdentifier,
                       int retentionDays = defaultRetentionDays);

    const QString& filePath() const { return m_filePath; }

    /// The first stored snapshot of the day of `dayStart`; account and station are trimmed first.
    std::optional<OutputHistorySnapshot> loadSnapshot(Timestamp dayStart, const QString& account,
                                                      const QString& stationID) const;

    /// Every stored snapshot of the trimmed account and station, in file order.
    std::vector<OutputHistorySnapshot> loadAllSnapshots(const QString& account, const QString& stationID) const;

    /// Stores the snapshot in place of any for the same day, account and station (taken as given, untrimmed), and
    /// drops the days that began more than `retentionDays` calendar days before today. When none is left, the file is
    /// deleted. A snapshot with a number that is not finite cannot be stored: the file stays as it is.
    void saveSnapshot(const OutputHistorySnapshot& snapshot, Timestamp now);

    /// Deletes what `loadSnapshot` would find, and the file when nothing else is in it.
    void removeSnapshot(Timestamp dayStart, const QString& account, const QString& stationID);

    /// Deletes the file, and the one that was kept.
    void clear();

private:
    Result<OutputHistoryArchive> read() const;

    /// With it the reason why the former file is to be kept, null when there is none.
    std::pair<OutputHistoryArchive, const char*> readForChange() const;
    void write(const OutputHistoryArchive& archive, const char* keptBecause);
    Result<void> replaceFile(const OutputHistoryArchive& archive, const char* keptBecause) const;

    QString m_filePath;
    int m_retentionDays;
    QString m_loggedFailure;
};

} // namespace Varnel
