#pragma once

#include <VarnelAppSupport/OutputHistorySnapshot.h>

#include <QByteArray>

#include <vector>

namespace Varnel {

/// The content of the history file: all snapshots of all accounts and stations, in file order.
struct OutputHistoryArchive {
    std::vector<OutputHistorySnapshot> snapshots;
};

/// Reads the file's bytes: an archive object, or one bare snapshot, the layout of the earliest releases. Every key is
/// required and every value must be of its type, otherwise nothing of the file counts and the archive is empty.
OutputHistoryArchive decodeOutputHistory(const QByteArray& content);

/// Compact JSON with sorted keys; instants as seconds since 2001-01-01 00:00:00 UTC. A double is written in its
/// shortest exact form, a whole one without a fraction (807926400), so that the content survives any number of
/// readings and writings byte for byte. All numbers must be finite.
QByteArray encodeOutputHistory(const OutputHistoryArchive& archive);

} // namespace Varnel
