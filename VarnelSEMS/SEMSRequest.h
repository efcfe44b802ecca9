#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSSession.h>
#include <VarnelShared/JSON.h>

#include <QByteArray>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel {

enum class HTTPMethod { get, post };

enum class BodyEncoding { json, form };

/// One call of the service before it becomes HTTP.
struct SEMSRequest {
    QString path; ///< below the base, or a whole http or https address, for which the base is ignored
    QUrl baseURL;
    HTTPMethod method = HTTPMethod::post;
    std::optional<JSON> body; ///< an object; sent by POST alone
    BodyEncoding encoding = BodyEncoding::json;
    std::optional<SEMSSession> authSession = std::nullopt;
    std::vector<std::pair<QByteArray, QByteArray>> extraHeaders; ///< set last, replacing earlier ones
    std::chrono::milliseconds timeout = HTTPRequest::defaultTimeout;
    QString name; ///< in the log; empty takes the path
};

/// The pattern once per path, in the order of the paths.
std::vector<SEMSRequest> requestsForPaths(const SEMSRequest& pattern, const QStringList& paths);

/// The base as text (with a "/" at its end) followed by the path (without the one it begins with). Fails with
/// `SEMSAPIError::invalidConfiguration` when that text is no http or https address.
Result<QUrl> joinedURL(const QString& path, const QUrl& baseURL);

/// The HTTP form of a request: headers in the order Accept, Content-Type, authentication, extra ones. Fails as
/// `joinedURL`.
Result<HTTPRequest> makeHTTPRequest(const SEMSRequest& request);

/// One name or value in the form encoding that the portal reads: letters, digits and "-._~" of the UTF-8 text stand
/// for themselves, a space becomes "+", every other byte "%" and two upper-case hexadecimal digits.
QByteArray formURLEncoded(const QString& text);

/// The members of an object as name=value pairs joined with "&", in the object's order; numbers in decimal.
QByteArray formURLEncodedData(const JSON& fields);

} // namespace Varnel
