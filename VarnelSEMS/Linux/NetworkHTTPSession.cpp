#include <VarnelSEMS/Linux/NetworkHTTPSession.h>

#include <VarnelSEMS/Linux/NetworkTransfer.h>
#include <VarnelShared/URLError.h>

#include <QCoreApplication>
#include <QCoroNetworkReply>
#include <QCoroSignal>
#include <QNetworkAccessManager>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Varnel {

namespace {
constexpr int maximumRedirects = 5;

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
}

/// Qt sends header values byte for byte: a line break in one would end the header and begin another.
bool isSendable(const HTTPRequest& request) {
    return isWebURL(request.url) &&
           std::none_of(request.headers.begin(), request.headers.end(), [](const auto& header) {
               return std::any_of(header.first.begin(), header.first.end(), isControl) ||
                      std::any_of(header.second.begin(), header.second.end(), isControl);
           });
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
    return isWebURL(target) && isSameOrigin(asked, target) ? std::optional(target) : std::nullopt;
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

/// The network access with its proxies from elsewhere: left to itself it asks the system for them, however long the
/// answer takes, on the main thread and before the deadline of the request begins to count.
std::unique_ptr<QNetworkAccessManager> makeManager(const SystemProxies& proxies) {
    auto manager = std::make_unique<QNetworkAccessManager>();
    manager->setProxyFactory(proxies.factory().release());
    return manager;
}

struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};
} // namespace

NetworkHTTPSession::NetworkHTTPSession()
    : m_manager(makeManager(m_proxies)) {}

NetworkHTTPSession::~NetworkHTTPSession() {
    // A reply that is deleted instead never wakes its coroutine. What wakes up may send again: that is refused.
    m_isEnding = true;
    const auto lookups = m_lookups;
    for (QFutureWatcherBase* lookup : lookups) {
        Q_EMIT lookup->finished();
        QCoreApplication::sendPostedEvents(lookup, QEvent::MetaCall); // which is how that wakes its coroutine
    }
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
    co_await settleProxies(request.url, std::min(deadline, QDeadlineTimer(request.timeout / 3)));
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

/// Ends with the lookup, at the deadline or when the session ends, whichever comes first. Without an answer the last
/// one counts: a lookup that never ends must not keep everything after it from the network.
QCoro::Task<void> NetworkHTTPSession::settleProxies(QUrl url, QDeadlineTimer deadline) {
    if (m_isEnding) {
        co_return;
    }
    const auto lookup = m_proxies.lookUp(url);
    if (!lookup.isFinished()) {
        // The signal that resumes this coroutine may be the watcher's own: it is deleted when that has returned.
        const std::unique_ptr<QFutureWatcher<QList<QNetworkProxy>>, DeleteLater> watcher(
            new QFutureWatcher<QList<QNetworkProxy>>);
        watcher->setFuture(lookup);
        QTimer::singleShot(std::chrono::milliseconds(deadline.remainingTime()), Qt::PreciseTimer, watcher.get(),
                           &QFutureWatcherBase::finished);
        m_lookups.push_back(watcher.get());
        co_await qCoro(static_cast<QFutureWatcherBase*>(watcher.get()), &QFutureWatcherBase::finished);
        std::erase(m_lookups, watcher.get());
    }
    if (lookup.isFinished()) {
        m_proxies.use(url, lookup.result());
    }
}

void NetworkHTTPSession::reset() {
    QNetworkAccessManager* retired = std::exchange(m_manager, makeManager(m_proxies)).release();
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
