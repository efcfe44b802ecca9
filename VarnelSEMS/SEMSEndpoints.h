#pragma once

#include <VarnelShared/AppSettings.h>
#include <VarnelShared/JSON.h>

#include <QString>
#include <QUrl>

#include <vector>

namespace Varnel {

/// The built-in addresses of the service. This record is the one place for them (the default base itself is the
/// default of the settings); tests hand in addresses of their own.
struct SEMSEndpoints {
    QUrl defaultBase{QString::fromLatin1(AppSettings::defaultBaseURL)};
    QUrl alternateBase{QStringLiteral("https://gopsapi.sems.com.cn/api/")}; ///< the service in China

    /// Texts looked for in a lower-cased host name.
    QString defaultPortalFragment = QStringLiteral("semsportal.com");
    QString alternateFragment = QStringLiteral("sems.com.cn");
    QString regionalFragment = QStringLiteral("semsplus"); ///< the operator's other regional hosts
};

/// The base below which the portal's paths stand: the address cut behind its first "/api/" in any case, or with "api/"
/// added where it has none. An address that this would spoil comes back unchanged.
QUrl normalizedLegacyAPIBase(const QUrl& url);

/// The base that a sign-in reply sends its user to: its own member "api", then "data.api", normalised. Without one
/// the fallback as it is; with one that is no address, or that would leave https for http, the fallback normalised.
QUrl resolveLegacyAPIBase(const JSON& reply, const QUrl& fallback);

/// The bases to try for a portal sign-in, in order and each once: the configured one, the default one and, for a host
/// in China or another regional host of the operator, the alternate one.
std::vector<QUrl> candidateLegacyAPIBases(const QUrl& url, const SEMSEndpoints& endpoints);

} // namespace Varnel
