#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelSEMS/SEMSRedaction.h>
#include <VarnelSEMS/SEMSReply.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/URLError.h>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
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

Result<JSON> accepted(Result<JSON> reply, const AttemptRules& rules) {
    if (reply && rules.accept) {
        if (const auto verdict = rules.accept(*reply); !verdict) {
            return failure(verdict.error());
        }
    }
    return reply;
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

Result<JSON> AttemptOutcome::result() && {
    if (reply) {
        return std::move(*reply);
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
QCoro::Task<Result<JSON>> SEMSAPIClient::requestJSON(SEMSRequest request) {
    auto http = makeHTTPRequest(request);
    if (!http) {
        co_return failure(http.error());
    }
    auto exchange = m_session.send(std::move(*http));
    const auto response = co_await std::move(exchange);
    if (!response) {
        co_return failure(response.error());
    }
    auto reply = judgedReply(*response, request, m_clock.now());
    if (!reply) {
        co_return failure(withoutSecrets(reply.error(), secretsOf(request)));
    }
    co_return reply;
}

QCoro::Task<AttemptOutcome> SEMSAPIClient::tryInOrder(std::vector<SEMSRequest> requests, AttemptRules rules) {
    const Timestamp begin = m_clock.now();
    AttemptOutcome outcome;
    for (SEMSRequest& request : requests) {
        outcome.carriedSession = request.authSession.has_value();
        if (!fitsTimeLimit(request, rules, m_clock.now() - begin)) {
            break;
        }
        auto answered = co_await requestJSON(request);
        auto reply = accepted(std::move(answered), rules);
        if (reply) {
            outcome.reply = std::move(*reply);
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
