#include <VarnelSEMS/SEMSEndpoints.h>

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSJSONSearch.h>

#include <algorithm>

namespace Varnel {

namespace {
/// Where the path of an absolute address begins. A host whose name starts with "api" is not a path: cut there, the
/// password would go to a host that nobody named.
qsizetype pathStart(const QString& address) {
    const qsizetype authority = address.indexOf(QLatin1String("://"));
    const qsizetype path = authority < 0 ? 0 : address.indexOf(QLatin1Char('/'), authority + 3);
    return path < 0 ? address.size() : path;
}

QString normalizedText(const QString& address) {
    const QString marker = QStringLiteral("/api");
    const qsizetype from = pathStart(address);
    const qsizetype folder = address.indexOf(marker + QLatin1Char('/'), from, Qt::CaseInsensitive);
    if (folder >= 0) {
        return address.left(folder + marker.size() + 1);
    }
    const qsizetype name = address.indexOf(marker, from, Qt::CaseInsensitive);
    if (name >= 0) {
        return address.left(name + marker.size()) + QLatin1Char('/');
    }
    return address + QLatin1String(address.endsWith(QLatin1Char('/')) ? "api/" : "/api/");
}

bool leavesHTTPS(const QUrl& from, const QUrl& to) {
    return from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https");
}
} // namespace

QUrl normalizedLegacyAPIBase(const QUrl& url) {
    return webURL(normalizedText(absoluteString(url))).value_or(url);
}

QUrl resolveLegacyAPIBase(const JSON& reply, const QUrl& fallback) {
    // The leading dot pins the first key to the reply itself: an "api" deeper down ("components.api") is a diagnostic
    // address, not a base.
    const auto named = SEMSJSONSearch::firstString(reply, {QStringLiteral(".api"), QStringLiteral("data.api")});
    if (!named) {
        return fallback;
    }
    // Whoever signed in over https keeps it: a token never goes out in the clear because a reply says so.
    const auto base = webURL(*named);
    return normalizedLegacyAPIBase(base && !leavesHTTPS(fallback, *base) ? *base : fallback);
}

std::vector<QUrl> candidateLegacyAPIBases(const QUrl& url, const SEMSEndpoints& endpoints) {
    const QString host = url.host().toLower();
    std::vector<QUrl> bases{normalizedLegacyAPIBase(url)};
    if (host.contains(endpoints.defaultPortalFragment)) {
        bases.push_back(endpoints.defaultBase);
    }
    if (host.contains(endpoints.alternateFragment) || host.contains(endpoints.regionalFragment)) {
        bases.push_back(endpoints.defaultBase);
        bases.push_back(endpoints.alternateBase);
    }
    bases.push_back(endpoints.defaultBase);

    std::vector<QUrl> unique;
    for (const QUrl& base : bases) {
        if (std::none_of(unique.begin(), unique.end(),
                         [&](const QUrl& seen) { return absoluteString(seen) == absoluteString(base); })) {
            unique.push_back(base);
        }
    }
    return unique;
}

} // namespace Varnel
