#pragma once

#include <VarnelShared/AppSettings.h>

#include <QString>
#include <QUrl>

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

} // namespace Varnel
