#include <VarnelSEMS/SEMSSession.h>

namespace Varnel {

QString legacyTokenHeaderString(const std::optional<QString>& uid, std::optional<std::int64_t> timestamp,
                                const QString& token, const JSON& extraValues) {
    JSON header = JSON::object();
    header["uid"] = toUtf8(uid.value_or(QString()));
    header["timestamp"] = timestamp.value_or(0);
    header["token"] = toUtf8(token);
    header["client"] = "web";
    header["version"] = "v2.0.4";
    header["language"] = "en";
    for (const auto& [key, value] : extraValues.items()) {
        if (!header.contains(key)) {
            header[key] = value;
        }
    }
    // JSON lets this one control character stand as it is; a header must not hold any.
    return QString::fromUtf8(serializedJSON(header)).replace(QChar(0x7f), QLatin1String("\\u007f"));
}

} // namespace Varnel
