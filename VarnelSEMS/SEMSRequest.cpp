#include <VarnelSEMS/SEMSRequest.h>

#include <VarnelSEMS/SEMSAPIError.h>

#include <QByteArrayList>
#include <QCoreApplication>

namespace Varnel {

namespace {
QByteArray methodName(HTTPMethod method) {
    switch (method) {
    case HTTPMethod::get:
        return "GET";
    case HTTPMethod::post:
        break;
    }
    return "POST";
}

QString portalTokenHeader(const SEMSSession& session) {
    return session.legacyTokenHeader ? *session.legacyTokenHeader
                                     : legacyTokenHeaderString(session.uid, session.timestamp, session.token);
}

/// Each family names its token in two spellings; header names fold case, so one header with the last spelling goes
/// out.
void applyAuthHeaders(HTTPRequest& request, const SEMSSession& session) {
    switch (session.authMode) {
    case SEMSAuthMode::openAPI: {
        const QByteArray token = session.token.toUtf8();
        request.setHeader("token", token);
        request.setHeader("Token", token);
        request.setHeader("Authorization", "Bearer " + token);
        break;
    }
    case SEMSAuthMode::legacyPortal: {
        const QByteArray token = portalTokenHeader(session).toUtf8();
        request.setHeader("Token", token);
        request.setHeader("token", token);
        request.setHeader("User-Agent", legacyUserAgent);
        break;
    }
    }
}

QString describedValue(const JSON& value) {
    return value.is_string() ? textOf(value) : QString::fromUtf8(serializedJSON(value));
}

void attachBody(HTTPRequest& request, const JSON& body, BodyEncoding encoding) {
    switch (encoding) {
    case BodyEncoding::json:
        request.setHeader("Content-Type", "application/json");
        request.body = serializedJSON(body);
        break;
    case BodyEncoding::form:
        request.setHeader("Content-Type", "application/x-www-form-urlencoded");
        request.body = formURLEncodedData(body);
        break;
    }
}
} // namespace

QByteArray formURLEncoded(const QString& text) {
    return QUrl::toPercentEncoding(text).replace("%20", "+");
}

QByteArray formURLEncodedData(const JSON& fields) {
    QByteArrayList pairs;
    for (const auto& [key, value] : fields.items()) {
        pairs += formURLEncoded(QString::fromStdString(key)) + '=' + formURLEncoded(describedValue(value));
    }
    return pairs.join('&');
}

std::vector<SEMSRequest> requestsForPaths(const SEMSRequest& pattern, const QStringList& paths) {
    std::vector<SEMSRequest> requests;
    for (const QString& path : paths) {
        requests.push_back(pattern);
        requests.back().path = path;
    }
    return requests;
}

Result<QUrl> joinedURL(const QString& path, const QUrl& baseURL) {
    QString text = path;
    if (!path.startsWith(QLatin1String("http://")) && !path.startsWith(QLatin1String("https://"))) {
        QString base = absoluteString(baseURL);
        if (!base.endsWith(QLatin1Char('/'))) {
            base += QLatin1Char('/');
        }
        text = base + (path.startsWith(QLatin1Char('/')) ? path.mid(1) : path);
    }
    const auto url = webURL(text);
    if (!url) {
        return failure(SEMSAPIError::invalidConfiguration(
            QCoreApplication::translate("SEMSAPIError", "Invalid SEMS URL path %1.").arg(path)));
    }
    return *url;
}

Result<HTTPRequest> makeHTTPRequest(const SEMSRequest& request) {
    const auto url = joinedURL(request.path, request.baseURL);
    if (!url) {
        return failure(url.error());
    }
    HTTPRequest http;
    http.method = methodName(request.method);
    http.url = *url;
    http.timeout = request.timeout;
    http.setHeader("Accept", "application/json");
    if (request.method == HTTPMethod::post && request.body) {
        attachBody(http, *request.body, request.encoding);
    }
    if (request.authSession) {
        applyAuthHeaders(http, *request.authSession);
    }
    for (const auto& [name, value] : request.extraHeaders) {
        http.setHeader(name, value);
    }
    return http;
}

} // namespace Varnel
