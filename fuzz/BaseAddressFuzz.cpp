#include "Fuzz.h"

#include <VarnelSEMS/SEMSEndpoints.h>
#include <VarnelSEMS/SEMSRequest.h>

using namespace Varnel;
using Fuzz::require;

// A base address that a person types or a reply names, and a station's identifier in a path: whatever they are, the
// host stays the one that was named.

namespace {
bool isSameServer(const QUrl& one, const QUrl& other) {
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

void join(const QUrl& base, const QString& path) {
    if (const Result<QUrl> joined = joinedURL(path, base)) {
        require(isWebURL(*joined) && isSameServer(*joined, base));
    }
}

void tryAsBase(const QString& text) {
    const auto base = webURL(text);
    if (!base) {
        return;
    }
    const QUrl normalized = normalizedLegacyAPIBase(*base);
    require(isSameServer(normalized, *base) && normalizedLegacyAPIBase(normalized) == normalized);
    const std::vector<QUrl> candidates = candidateLegacyAPIBases(*base, {});
    require(candidates.front() == normalized && candidates.size() <= 3);
    join(normalized, QStringLiteral("v2/Common/CrossLogin"));
    join(*base, QStringLiteral("/api/v1/OpenApi/GetToken"));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = Fuzz::textOf(data, size);
    tryAsBase(text);
    const QUrl own(QStringLiteral("https://own.example/api/"));
    join(own, QStringLiteral("/api/v1/OpenApi/GetPowerStationMonitorDetail/") + text);
    const QUrl named = resolveLegacyAPIBase({{"api", toUtf8(text)}}, own);
    require(isWebURL(named) && named.scheme() == QLatin1String("https"));
    return 0;
}
