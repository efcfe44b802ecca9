#pragma once

#include <VarnelShared/JSON.h>

#include <QString>

#include <cstdint>
#include <optional>

namespace Varnel {

/// What the portal takes for its own mobile application, which its replies are made for.
inline constexpr char legacyUserAgent[] = "PVMaster/2.0.4 (iPhone; iOS 11.4.1; Scale/2.00)";

/// The value of the portal's "Token" header: a JSON text with "uid", "timestamp" (0 when there is none), "token",
/// "client", "version" and "language", then every member of `extraValues` that is none of these six. Without a user
/// id, timestamp and token it is the anonymous header that a sign-in sends.
QString legacyTokenHeaderString(const std::optional<QString>& uid, std::optional<std::int64_t> timestamp,
                                const QString& token, const JSON& extraValues = JSON::object());

} // namespace Varnel
