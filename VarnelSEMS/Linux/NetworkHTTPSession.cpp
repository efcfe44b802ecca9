#include <VarnelSEMS/Linux/NetworkHTTPSession.h>

#include <VarnelSEMS/Linux/NetworkTransfer.h>
#include <VarnelShared/URLError.h>

#include <QCoroNetworkReply>
#include <QNetworkAccessManager>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Varnel {

namespace {
constexpr int maximumRedirects = 5;

bool isWebAddress(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
}

/// Qt sends header values byte for byte: a line break in one would end the header and begin another.
bool isSendable(const HTTPRequest& request) {
    return isWebAddress(request.url) &&
           std::none_of(request.headers.begin(), request.headers.end(), [](const auto& header) {
               return std::any_of(header.first.begin(), header.first.end(), isControl) ||
                      std::any_of(header.second.begin(), header.second.end(), isControl);
           });
}

int portOf(const QUrl& url) {
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool isSameOrigin(const QUrl& one, const QUrl& other) {
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

/// Where the response sends its request on to, when that is the same origin: the token and the password in the request
/// go to no host that was not chosen.
std::optional<QUrl> redirectTarget(const QUrl& asked, const HTTPResponse& response) {
    constexpr int redirects[] = {301, 302, 303, 307, 308};
    const auto location = std::find_if(response.headers.begin(), response.headers.end(), [](const auto& header) {
        return header.first.compare("Location", Qt::CaseInsensitive) == 0;
    });
    if (std::find(std::begin(redirects), std::end(redirects), response.statusCode.value_or(0)) == std::end(redirects) ||
        location == response.headers.end()) {
        return std::nullopt;
    }
    const QUrl target = asked.resolved(QUrl::fromEncoded(location->second));
    return isWebAddress(target) && isSameOrigin(asked, target) ? std::optional(target) : std::nullopt;
}

void redirect(HTTPRequest& request, const QUrl& target, int status) {
    request.url = target;
    if (status == 303) {
        request.method = "GET";
        request.body.reset();
        std::erase_if(request.headers, [](const auto& header) {
            return header.first.compare("Content-Type", Qt::CaseInsensitive) == 0;
        });
    }
}
} // namespace

NetworkHTTPSession::NetworkHTTPSession()
    : m_manager(std::make_unique<QNetworkAccessManager>()) {}

NetworkHTTPSession::~NetworkHTTPSession() {
    // A reply that is deleted instead never wakes its coroutine. What wakes up may send again: that is refused.
    m_isEnding = true;
    const auto inFlight = m_inFlight;
    for (QNetworkReply* reply : inFlight) {
        reply->abort();
    }
}

QCoro::Task<Result<HTTPResponse>> NetworkHTTPSession::send(HTTPRequest request) {
    if (!isSendable(request)) {
        co_return failure(URLError{URLError::Code::badURL, {}});
    }
    const QDeadlineTimer deadline(request.timeout, Qt::PreciseTimer);
    for (int redirects = 0;; ++redirects) {
        auto response = co_await exchange(request, deadline);
        if (!response) {
            co_return response;
        }
        const auto target = redirectTarget(request.url, *response);
        if (!target || redirects == maximumRedirects) {
            co_return response;
        }
        redirect(request, *target, *response->statusCode);
    }
}

QCoro::Task<Result<HTTPResponse>> NetworkHTTPSession::exchange(HTTPRequest request, QDeadlineTimer deadline) {
    if (m_isEnding) {
        co_return failure(URLError{URLError::Code::cancelled, {}});
    }
    if (deadline.hasExpired()) {
        co_return failure(URLError{URLError::Code::timedOut, {}});
    }
    QNetworkAccessManager* manager = m_manager.get();
    NetworkTransfer transfer(*manager, request, std::chrono::milliseconds(deadline.remainingTime()));
    m_inFlight.push_back(transfer.reply());
    co_await transfer.reply();
    std::erase(m_inFlight, transfer.reply());
    releaseIfUnused(manager);
    co_return transfer.outcome();
}

void NetworkHTTPSession::reset() {
    QNetworkAccessManager* retired = std::exchange(m_manager, std::make_unique<QNetworkAccessManager>()).release();
    retired->setParent(&m_retired);
    releaseIfUnused(retired);
}

/// Later rather than now: the manager's own reply may be the one that calls.
void NetworkHTTPSession::releaseIfUnused(QNetworkAccessManager* manager) {
    const bool isUsed = manager == m_manager.get() ||
                        std::any_of(m_inFlight.begin(), m_inFlight.end(),
                                    [manager](const QNetworkReply* reply) { return reply->manager() == manager; });
    if (!isUsed) {
        manager->deleteLater();
    }
}

} // namespace Varnel
