#pragma once

#include <VarnelShared/JSON.h>

#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace Varnel {

/// The two API families of the service.
enum class SEMSAuthMode {
    openAPI,      ///< the token API: paths below /api/v1/OpenApi/ or /api/OpenApi/
    legacyPortal, ///< the older portal API: paths such as v2/Common/CrossLogin below a base that ends in /api/
};

/// A signed-in session. Made by sign-in alone and never changed; signing out means dropping it.
struct SEMSSession {
    SEMSAuthMode authMode = SEMSAuthMode::openAPI;
    QString token;
    std::optional<QString> uid;               ///< the portal's user id
    std::optional<std::int64_t> timestamp;    ///< the portal's login time, as the portal counts it
    QUrl apiBaseURL;                          ///< the base of every later call
    std::optional<QString> legacyTokenHeader; ///< the ready value of the portal's "Token" header

    bool operator==(const SEMSSession&) const = default;
};

/// What the portal takes for its own mobile application, which its replies are made for.
inline constexpr char legacyUserAgent[] = "PVMaster/2.0.4 (iPhone; iOS 11.4.1; Scale/2.00)";

/// The value of the portal's "Token" header: a JSON text with "uid", "timestamp" (0 when there is none), "token",
/// "client", "version" and "language", then every member of `extraValues` that is none of these six. Without a user
/// id, timestamp and token it is the anonymous header that a sign-in sends.
QString legacyTokenHeaderString(const std::optional<QString>& uid, std::optional<std::int64_t> timestamp,
                                const QString& token, const JSON& extraValues = JSON::object());

} // namespace Varnel
