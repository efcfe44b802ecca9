#pragma once

#include <VarnelShared/Timestamp.h>

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace Varnel {

/// The power at one instant of a day.
struct OutputHistorySample {
    Timestamp timestamp;
    double kilowatts = 0;

    bool operator==(const OutputHistorySample&) const = default;
};

/// The samples of one day for one account and one station.
struct OutputHistorySnapshot {
    Timestamp dayStart; ///< the start of the local day to which the samples belong
    QString account;
    QString stationID;
    std::vector<OutputHistorySample> samples; ///< in the order in which they were given

    bool operator==(const OutputHistorySnapshot&) const = default;
};

/// The content of the history file: all snapshots of all accounts and stations, in file order.
struct OutputHistoryArchive {
    std::vector<OutputHistorySnapshot> snapshots;
};

/// Reads the file's bytes: an archive object, or one bare snapshot, the layout of the earliest releases. Every key is
/// required and every value must be of its type, otherwise nothing of the file counts and there is none.
std::optional<OutputHistoryArchive> decodeOutputHistory(const QByteArray& content);

/// Compact JSON with sorted keys; instants as seconds since 2001-01-01 00:00:00 UTC. A double is written in its
/// shortest exact form, a whole one without a fraction (807926400), so that the content survives any number of
/// readings and writings byte for byte. All numbers must be finite.
QByteArray encodeOutputHistory(const OutputHistoryArchive& archive);

} // namespace Varnel
