#include <VarnelSEMS/Linux/NetworkHTTPSession.h>

#include <VarnelSEMS/Linux/CurlTransfer.h>
#include <VarnelShared/URLError.h>

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <coroutine>
#include <utility>

namespace Varnel {

namespace {
constexpr int maximumRedirects = 5;

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
}

/// Header values go out byte for byte: a line break in one would end the header and begin another.
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
    const auto location = response.header("Location");
    if (std::find(std::begin(redirects), std::end(redirects), response.statusCode.value_or(0)) == std::end(redirects) ||
        !location) {
        return std::nullopt;
    }
    const QUrl target = asked.resolved(QUrl::fromEncoded(*location));
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

struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};

/// Wakes the coroutine after the signal, by an event to the object itself, which the session can so deliver at once
/// when it ends. Whom QCoro's own wait for a signal tells differs between its versions.
template <typename Object, typename Signal>
class Signalled {
public:
    Signalled(Object* object, Signal signal)
        : m_object(object)
        , m_signal(signal) {}

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting) const {
        constexpr int onceFromTheLoop = Qt::QueuedConnection | Qt::SingleShotConnection;
        QObject::connect(
            m_object, m_signal, m_object, [waiting] { waiting.resume(); },
            static_cast<Qt::ConnectionType>(onceFromTheLoop));
    }
    void await_resume() const noexcept {}

private:
    Object* m_object;
    Signal m_signal;
};
} // namespace

NetworkHTTPSession::NetworkHTTPSession() = default;

NetworkHTTPSession::~NetworkHTTPSession() {
    // What is deleted instead never wakes its coroutine. What wakes up may send again: that is refused.
    m_isEnding = true;
    const auto lookups = m_lookups;
    for (QFutureWatcherBase* lookup : lookups) {
        Q_EMIT lookup->finished();
        QCoreApplication::sendPostedEvents(lookup, QEvent::MetaCall); // which is how that wakes its coroutine
    }
    const auto transfers = m_transfers;
    for (CurlTransfer* transfer : transfers) {
        transfer->cancel();
        QCoreApplication::sendPostedEvents(transfer, QEvent::MetaCall);
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
    const std::unique_ptr<CurlTransfer, DeleteLater> transfer(
        new CurlTransfer(request, m_proxies.known(request.url), std::chrono::milliseconds(deadline.remainingTime())));
    m_transfers.push_back(transfer.get());
    const Signalled finished(transfer.get(), &CurlTransfer::finished);
    co_await finished;
    std::erase(m_transfers, transfer.get());
    co_return transfer->outcome();
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
        const std::unique_ptr<QFutureWatcher<QNetworkProxy>, DeleteLater> watcher(new QFutureWatcher<QNetworkProxy>);
        watcher->setFuture(lookup);
        QTimer::singleShot(std::chrono::milliseconds(deadline.remainingTime()), Qt::PreciseTimer, watcher.get(),
                           &QFutureWatcherBase::finished);
        m_lookups.push_back(watcher.get());
        const Signalled finished(static_cast<QFutureWatcherBase*>(watcher.get()), &QFutureWatcherBase::finished);
        co_await finished;
        std::erase(m_lookups, watcher.get());
    }
}

} // namespace Varnel
