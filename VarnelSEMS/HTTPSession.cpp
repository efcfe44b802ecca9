#include <VarnelSEMS/HTTPSession.h>

#include <algorithm>

namespace Varnel {

void HTTPRequest::setHeader(const QByteArray& name, const QByteArray& value) {
    const auto existing = std::find_if(headers.begin(), headers.end(), [&name](const auto& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (existing == headers.end()) {
        headers.emplace_back(name, value);
    } else {
        *existing = {name, value};
    }
}

std::optional<QByteArray> HTTPResponse::header(const QByteArray& name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const auto& each) {
        return each.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

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
