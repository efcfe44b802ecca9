#include "Fuzz.h"

#include <VarnelAppSupport/OutputHistoryArchive.h>

using namespace Varnel;

/// Reads any bytes as a history file. What comes out is written in a form that reads and writes again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto archive = decodeOutputHistory(Fuzz::bytesOf(data, size));
    if (archive) {
        const QByteArray written = encodeOutputHistory(*archive);
        const auto read = decodeOutputHistory(written);
        Fuzz::require(read && read->snapshots == archive->snapshots && encodeOutputHistory(*read) == written);
        for (const OutputHistorySnapshot& snapshot : archive->snapshots) {
            snapshot.dayStart.toDateTime();
        }
    }
    return 0;
}
