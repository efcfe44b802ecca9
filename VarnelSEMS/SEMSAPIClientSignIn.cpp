#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelSEMS/SEMSRedaction.h>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
/// The service's generations read the account and the password under different names; every name is sent at once.
std::vector<SEMSRequest> openAPISignInRequests(const QUrl& base, const QString& account, const QString& password) {
    SEMSRequest request;
    request.baseURL = base;
    request.body = JSON::object();
    (*request.body)["account"] = toUtf8(account);
    (*request.body)["pwd"] = toUtf8(password);
    (*request.body)["userName"] = toUtf8(account);
    (*request.body)["username"] = toUtf8(account);
    (*request.body)["password"] = toUtf8(password);
    return requestsForPaths(request,
                            {QStringLiteral("/api/v1/OpenApi/GetToken"), QStringLiteral("/api/OpenApi/GetToken")});
}

/// A token goes into a header as it is, and none of these may stand there.
bool hasControlCharacter(const QString& token) {
    return std::any_of(token.begin(), token.end(),
                       [](QChar character) { return character.category() == QChar::Other_Control; });
}

Result<SEMSSession> openAPISession(const JSON& reply, const QUrl& base) {
    const auto token = SEMSJSONSearch::firstString(
        reply, {QStringLiteral("data.token"), QStringLiteral("token"), QStringLiteral("data.access_token"),
                QStringLiteral("data.accessToken"), QStringLiteral("access_token"), QStringLiteral("accessToken")});
    if (!token || token->isEmpty()) {
        return failure(SEMSAPIError::authenticationFailed());
    }
    if (hasControlCharacter(*token)) {
        return failure(SEMSAPIError::invalidResponse());
    }
    SEMSSession session;
    session.authMode = SEMSAuthMode::openAPI;
    session.token = *token;
    session.uid = SEMSJSONSearch::firstString(reply, {QStringLiteral("data.uid"), QStringLiteral("uid"),
                                                      QStringLiteral("data.userId"), QStringLiteral("userId")});
    session.timestamp = SEMSJSONSearch::firstInt(reply, {QStringLiteral("data.timestamp"), QStringLiteral("timestamp"),
                                                         QStringLiteral("data.ts"), QStringLiteral("ts")});
    session.apiBaseURL = base;
    return session;
}

std::vector<SEMSRequest> portalSignInRequests(const std::vector<QUrl>& bases, const QString& account,
                                              const QString& password) {
    const QByteArray anonymous = legacyTokenHeaderString(std::nullopt, std::nullopt, QString()).toUtf8();
    SEMSRequest request;
    request.encoding = BodyEncoding::form;
    request.body = JSON::object();
    (*request.body)["account"] = toUtf8(account);
    (*request.body)["pwd"] = toUtf8(password);
    request.extraHeaders = {{"User-Agent", legacyUserAgent}, {"Token", anonymous}, {"token", anonymous}};

    std::vector<SEMSRequest> requests;
    for (const QUrl& base : bases) {
        for (const QString& path : {QStringLiteral("v2/Common/CrossLogin"), QStringLiteral("v1/Common/CrossLogin")}) {
            request.baseURL = base;
            request.path = path;
            request.name = shownAddress(base) + path;
            requests.push_back(request);
        }
    }
    return requests;
}

/// The session of a portal reply. The token counts in "data" alone; whatever else "data" holds goes into the header
/// of every later call.
Result<SEMSSession> portalSession(const JSON& reply, const QUrl& base) {
    if (!reply.is_object()) {
        return failure(SEMSAPIError::invalidResponse());
    }
    const JSON* found = SEMSJSONSearch::firstDictionary(reply, {QStringLiteral("data")});
    const JSON data = found != nullptr ? *found : JSON::object();
    const auto token = SEMSJSONSearch::firstString(
        data, {QStringLiteral("token"), QStringLiteral("access_token"), QStringLiteral("accessToken")});
    if (!token || token->isEmpty()) {
        return failure(SEMSAPIError::authenticationFailed());
    }
    SEMSSession session;
    session.authMode = SEMSAuthMode::legacyPortal;
    session.token = *token;
    session.uid =
        SEMSJSONSearch::firstString(data, {QStringLiteral("uid"), QStringLiteral("user_id"), QStringLiteral("userId")});
    session.timestamp = SEMSJSONSearch::firstInt(data, {QStringLiteral("timestamp"), QStringLiteral("ts")});
    session.legacyTokenHeader = legacyTokenHeaderString(session.uid, session.timestamp, session.token, data);
    session.apiBaseURL = resolveLegacyAPIBase(reply, base);
    return session;
}

/// One line for each attempt that failed.
QStringList attemptLines(const std::vector<SEMSRequest>& requests, const std::vector<Error>& failures) {
    QStringList lines;
    for (std::size_t i = 0; i < failures.size(); ++i) {
        lines += requests[i].name + QStringLiteral(": ") + failures[i].localizedDescription();
    }
    return lines;
}
} // namespace

QCoro::Task<Result<SEMSSession>> SEMSAPIClient::signIn(QString account, QString password) {
    const auto self = shared_from_this();
    if (!isWebURL(m_configuredBaseURL)) {
        // Else the portal's own candidates would be asked, and what is wrong with the address never said.
        co_return failure(SEMSAPIError::invalidConfiguration(QStringLiteral("Invalid SEMS base URL.")));
    }
    m_credentials = secretsOf(openAPISignInRequests(m_configuredBaseURL, account, password).front());
    auto byToken = co_await signInOpenAPI(account, password);
    if (byToken) {
        co_return byToken;
    }
    // Which family serves an account shows only by asking, so not even a rejected password ends the search here.
    auto byPortal = co_await signInLegacyPortal(account, password);
    if (byPortal) {
        co_return byPortal;
    }
    const QStringList lines{QStringLiteral("OpenAPI: ") + byToken.error().localizedDescription(),
                            QStringLiteral("Portal API: ") + byPortal.error().localizedDescription()};
    SEMSAPIError::AllSignInStrategiesFailed failed{lines};
    // The token API refuses whoever has no account there, so its word on the password is none.
    failed.wasJudged = !isTransient(byPortal.error());
    failed.retryAfter = std::max(retryAfterOf(byToken.error()), retryAfterOf(byPortal.error()));
    co_return failure(SEMSAPIError{failed});
}

QCoro::Task<Result<SEMSSession>> SEMSAPIClient::signInOpenAPI(QString account, QString password) {
    auto requests = openAPISignInRequests(m_configuredBaseURL, account, password);
    Result<SEMSSession> session = failure(SEMSAPIError::invalidResponse());
    AttemptRules rules;
    // An answer without a token is the service's word on this account: the other path would say the same.
    rules.read = [&session](const JSON& reply, const SEMSRequest& answered) {
        session = openAPISession(reply, answered.baseURL);
        return Result<void>();
    };
    const auto outcome = co_await tryInOrder(std::move(requests), std::move(rules));
    const auto answered = outcome.result();
    co_return answered ? session : failure(answered.error());
}

QCoro::Task<Result<SEMSSession>> SEMSAPIClient::signInLegacyPortal(QString account, QString password) {
    const auto bases = candidateLegacyAPIBases(m_configuredBaseURL, m_endpoints);
    const auto requests = portalSignInRequests(bases, account, password);
    Result<SEMSSession> session = failure(SEMSAPIError::invalidResponse());
    AttemptRules rules;
    rules.read = [&session](const JSON& reply, const SEMSRequest& answered) {
        session = portalSession(reply, answered.baseURL);
        return session.map([](const SEMSSession&) {});
    };
    const auto outcome = co_await tryInOrder(requests, std::move(rules));
    if (!outcome.hasReply) {
        SEMSAPIError::AllSignInStrategiesFailed failed{attemptLines(requests, outcome.failures)};
        failed.wasJudged = !std::all_of(outcome.failures.begin(), outcome.failures.end(), isTransient);
        failed.retryAfter = outcome.retryAfter();
        co_return failure(SEMSAPIError{failed});
    }
    co_return session;
}

} // namespace Varnel
