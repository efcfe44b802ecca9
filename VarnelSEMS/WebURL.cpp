#include <VarnelSEMS/WebURL.h>

namespace Varnel {

QString absoluteString(const QUrl& url) {
    return url.toString(QUrl::FullyEncoded);
}

QString shownAddress(const QUrl& url) {
    return url.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo);
}

std::optional<QUrl> webURL(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty() ? std::optional(url) : std::nullopt;
}

} // namespace Varnel
