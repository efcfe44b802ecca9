#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelSEMS/SEMSRedaction.h>
#include <VarnelSEMS/SEMSReply.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/URLError.h>

#include <QCoroFuture>
#include <QPromise>
#include <QThreadPool>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
/// A larger one is parsed and searched on another thread: it would take longer than a person notices. The service's own
/// are a tenth of this.
constexpr qsizetype largestBodyReadAtOnce = 262'144;

/// A path that the service asked to leave alone for a while may stand before one that does not exist.
Error withRetryAfter(const Error& error, std::optional<std::chrono::seconds> retryAfter) {
    if (!isCase<SEMSAPIError::NetworkStatus>(error)) {
        return error;
    }
    auto status = std::get<SEMSAPIError::NetworkStatus>(error.as<SEMSAPIError>()->kind);
    status.retryAfter = retryAfter;
    return SEMSAPIError{status};
}

/// Shortens the request's deadline to what is left of the limit; false when nothing is left.
bool fitsTimeLimit(SEMSRequest& request, const AttemptRules& rules, Seconds elapsed) {
    if (!rules.timeLimit) {
        return true;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(*rules.timeLimit - elapsed);
    request.timeout = std::min(request.timeout, left);
    return left.count() > 0;
}

/// What becomes of the body of a reply, all that takes time in proportion to its size.
Result<void> readReply(const HTTPResponse& response, const SEMSRequest& request, const QStringList& secrets,
                       Timestamp now, const ReplyReader& read) {
    const auto reply = judgedReply(response, request, now);
    return reply ? read(*reply, request) : failure(withoutSecrets(reply.error(), secrets));
}

/// On a thread of the application's pool. The call must stay valid until the future has finished.
QFuture<void> runOnThread(std::function<void()> call) {
    QPromise<void> promise;
    promise.start();
    QFuture<void> ended = promise.future();
    // A shared pointer, since the pool copies what it runs and a promise cannot be copied.
    const auto shared = std::make_shared<QPromise<void>>(std::move(promise));
    QThreadPool::globalInstance()->start([shared, call = std::move(call)] {
        call();
        shared->finish();
    });
    return ended;
}

void logFailedAttempt(const SEMSRequest& request, const Error& error) {
    const QString& name = request.name.isEmpty() ? request.path : request.name;
    qCDebug(lcSEMSAPI, "Endpoint attempt failed for %s: %s", qUtf8Printable(name),
            qUtf8Printable(error.localizedDescription()));
}
} // namespace

std::optional<std::chrono::seconds> AttemptOutcome::retryAfter() const {
    std::optional<std::chrono::seconds> longest;
    for (const Error& each : failures) {
        longest = std::max(longest, retryAfterOf(each));
    }
    return longest;
}

Result<void> AttemptOutcome::result() const {
    if (hasReply) {
        return {};
    }
    const auto refused = std::find_if(failures.begin(), failures.end(), isCase<SEMSAPIError::AuthenticationFailed>);
    if (carriedSession && refused != failures.end()) {
        return failure(*refused);
    }
    return failure(failures.empty() ? SEMSAPIError::invalidResponse() : withRetryAfter(failures.back(), retryAfter()));
}

SEMSAPIClient::SEMSAPIClient(QUrl baseURL, HTTPSession& session, const Clock& clock, SEMSEndpoints endpoints)
    : m_configuredBaseURL(std::move(baseURL))
    , m_session(session)
    , m_clock(clock)
    , m_endpoints(std::move(endpoints)) {}

/// The only way to the network.
QCoro::Task<Result<void>> SEMSAPIClient::requestJSON(SEMSRequest request, ReplyReader read) {
    if (m_isStopped) {
        co_return failure(URLError{URLError::Code::cancelled, {}});
    }
    auto http = makeHTTPRequest(request);
    if (!http) {
        co_return failure(http.error());
    }
    auto exchange = m_session.send(std::move(*http));
    const auto response = co_await std::move(exchange);
    if (!response) {
        co_return failure(response.error());
    }
    const QStringList secrets = secretsOf(request, m_credentials);
    const Timestamp now = m_clock.now();
    if (response->body.size() <= largestBodyReadAtOnce) {
        co_return readReply(*response, request, secrets, now, read);
    }
    Result<void> outcome;
    const std::function<void()> call = [&] { outcome = readReply(*response, request, secrets, now, read); };
    QFuture<void> ended = runOnThread(call);
    co_await ended;
    co_return outcome;
}

QCoro::Task<AttemptOutcome> SEMSAPIClient::tryInOrder(std::vector<SEMSRequest> requests, AttemptRules rules) {
    const Timestamp begin = m_clock.now();
    AttemptOutcome outcome;
    for (SEMSRequest& request : requests) {
        outcome.carriedSession = request.authSession.has_value();
        if (!fitsTimeLimit(request, rules, m_clock.now() - begin)) {
            break;
        }
        const auto reply = co_await requestJSON(request, rules.read);
        outcome.hasReply = reply.has_value();
        if (reply) {
            break;
        }
        logFailedAttempt(request, reply.error());
        outcome.failures.push_back(reply.error());
        if (rules.endAtTransportFailure && reply.error().as<URLError>() != nullptr) {
            break;
        }
    }
    co_return outcome;
}

} // namespace Varnel
