#include "Fuzz.h"

#include <VarnelSEMS/Linux/CurlReport.h>

using namespace Varnel;
using Fuzz::require;

/// The heads of a server and of a proxy as they came, with what follows them: no line of one becomes two headers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CurlReport report = parsedCurlReport(Fuzz::bytesOf(data, size), size > 0 ? data[size - 1] % 100 : 0);
    for (const auto& [name, value] : report.headers) {
        require(!name.isEmpty() && !name.contains('\n') && !name.contains(':') && !value.contains('\n'));
    }
    for (const auto type : {QNetworkProxy::NoProxy, QNetworkProxy::HttpProxy}) {
        const URLError error = urlErrorFor(report, QNetworkProxy(type), NetworkState::available);
        require(!error.localizedDescription().isEmpty());
    }
    return 0;
}
