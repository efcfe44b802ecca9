#pragma once

#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel {

/// One HTTP request. Header names fold case: setting a name again replaces its value and its spelling.
struct HTTPRequest {
    static constexpr std::chrono::seconds defaultTimeout{12}; ///< in force for every call of the service

    QByteArray method; ///< "GET" or "POST"
    QUrl url;
    std::vector<std::pair<QByteArray, QByteArray>> headers; ///< in the order of their first setting
    std::optional<QByteArray> body;
    std::chrono::milliseconds timeout = defaultTimeout; ///< from sending to the last byte of the body

    void setHeader(const QByteArray& name, const QByteArray& value);
};

/// What came back, whatever its status.
struct HTTPResponse {
    std::optional<int> statusCode; ///< none when the reply was not an HTTP reply
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body; ///< decoded, whole

    /// The first of that name in any case; none when there is none.
    std::optional<QByteArray> header(const QByteArray& name) const;
};

/// Sends HTTP requests. A port; the contract of every implementation:
/// - A reply with any status is a success, also one of 4xx, 5xx and of 3xx to another origin, which is never followed.
/// - Fails with `URLError` alone: `timedOut` once `timeout` has passed in total, `networkConnectionLost` for a body
///   that was cut short, `dataTooLarge` past the size limit, `badURL` for a header with control characters, which is
///   never sent.
/// - Nothing is kept from one request to the next, neither cookies nor connections: nothing of one account reaches
///   another.
/// - Blocks nothing; must outlive every task it gave out.
class HTTPSession {
public:
    HTTPSession() = default;
    HTTPSession(const HTTPSession&) = delete;
    HTTPSession& operator=(const HTTPSession&) = delete;
    virtual ~HTTPSession() = default;

    virtual QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) = 0;
};

/// The address as one text, percent-encoded where the address is.
QString absoluteString(const QUrl& url);

/// The address as it may be shown and logged: without a user name and password written into it.
QString shownAddress(const QUrl& url);

/// Whether it is an http or https address with a host.
bool isWebURL(const QUrl& url);

/// The port of such an address, the scheme's own where it names none.
int portOf(const QUrl& url);

/// The http or https address that the text spells exactly, host included; none for any other text. Nothing is
/// repaired: a space or another character that an address cannot hold makes it none.
std::optional<QUrl> webURL(const QString& text);

} // namespace Varnel
