#include <VarnelAppSupport/OutputHistoryArchive.h>

#include <cstdlib>

/// Reads any bytes as a history file. What comes out is written in a form that reads and writes again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto archive = Varnel::decodeOutputHistory(content);
    if (!archive) {
        return 0;
    }
    const QByteArray written = Varnel::encodeOutputHistory(*archive);
    const auto read = Varnel::decodeOutputHistory(written);
    if (!read || read->snapshots != archive->snapshots || Varnel::encodeOutputHistory(*read) != written) {
        std::abort();
    }
    return 0;
}
