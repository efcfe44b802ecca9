#include <VarnelSEMS/WebURL.h>

namespace Varnel {

QString absoluteString(const QUrl& url) {
    return url.toString(QUrl::FullyEncoded);
}

QString shownAddress(const QUrl& url) {
    return url.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo);
}

bool isWebURL(const QUrl& url) {
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty();
}

int portOf(const QUrl& url) {
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

std::optional<QUrl> webURL(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    return isWebURL(url) ? std::optional(url) : std::nullopt;
}

} // namespace Varnel
