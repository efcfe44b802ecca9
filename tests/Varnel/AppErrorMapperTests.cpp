#include <Varnel/AppErrorMapper.h>

#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelShared/JSON.h>
#include <VarnelShared/URLError.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

struct Row {
    const char* name;
    Error error;
    const char* signIn;
    const char* polling; ///< null: the same line
};

constexpr char offline[] = "Offline. Check your internet connection and try Refresh.";
constexpr char unreachable[] = "SEMS endpoint is unreachable. Check Base URL in Profile.";
constexpr char unavailable[] = "SEMS service is temporarily unavailable. Try again shortly.";
constexpr char credentials[] = "Sign-in failed. Check email/password in Profile and reconnect.";
constexpr char expired[] = "Session expired or credentials changed. Open Settings and reconnect.";
constexpr char rejected[] = "Sign-in rejected. Check account credentials and endpoint.";
constexpr char sessionRejected[] = "Session rejected by SEMS. Open Settings and reconnect.";

SEMSAPIError status(int code) {
    return SEMSAPIError::networkStatus(code, QStringLiteral("<secret body>"));
}

const Row messageRows[] = {
    {"no network", URLError{URLError::Code::notConnectedToInternet, {}}, offline, nullptr},
    {"lost", URLError{URLError::Code::networkConnectionLost, {}}, offline, nullptr},
    {"no host", URLError{URLError::Code::cannotFindHost, {}}, unreachable, nullptr},
    {"refused", URLError{URLError::Code::cannotConnectToHost, {}}, unreachable, nullptr},
    {"no name", URLError{URLError::Code::dnsLookupFailed, {}}, unreachable, nullptr},
    {"timed out", URLError{URLError::Code::timedOut, {}}, "SEMS request timed out. Try Refresh in a moment.", nullptr},
    {"bad URL", URLError{URLError::Code::badURL, QStringLiteral("bad")}, "Sign in failed: bad", "Polling failed: bad"},
    {"TLS", URLError{URLError::Code::secureConnectionFailed, QStringLiteral("t")}, "Sign in failed: t",
     "Polling failed: t"},
    {"301", status(301), "SEMS API returned HTTP 301: <secret body>", nullptr},
    {"400", status(400), "SEMS request failed (HTTP 400).", nullptr},
    {"401", status(401), rejected, sessionRejected},
    {"403", status(403), rejected, sessionRejected},
    {"404", status(404), "SEMS request failed (HTTP 404).", nullptr},
    {"429", status(429), "SEMS rate limit reached. Please wait a moment and retry.", nullptr},
    {"499", status(499), "SEMS request failed (HTTP 499).", nullptr},
    {"500", status(500), unavailable, nullptr},
    {"503", status(503), unavailable, nullptr},
    {"all strategies", SEMSAPIError::allSignInStrategiesFailed({}), credentials, expired},
    {"authentication", SEMSAPIError::authenticationFailed(), credentials, expired},
    {"no station", SEMSAPIError::noPowerStation(),
     "No power station found. Verify account access or set Station ID in Profile.", nullptr},
    {"no power", SEMSAPIError::noInstantPower(), "Could not find instantaneous power in SEMS response.", nullptr},
    {"invalid response", SEMSAPIError::invalidResponse(), "Unexpected response from SEMS API.", nullptr},
    {"configuration", SEMSAPIError::invalidConfiguration(QStringLiteral("c")), "c", nullptr},
    {"service", SEMSAPIError::api(QStringLiteral("Bad")), "Bad", nullptr},
    {"anything else", JSONError{QStringLiteral("x")}, "Sign in failed: x", "Polling failed: x"},
};

TEST(AppErrorMapper, GivesEachErrorItsLineByContext) {
    for (const Row& row : messageRows) {
        EXPECT_EQ(AppErrorMapper::userFacingMessage(row.error, AppErrorContext::signIn).toStdString(), row.signIn)
            << row.name;
        EXPECT_EQ(AppErrorMapper::userFacingMessage(row.error, AppErrorContext::polling).toStdString(),
                  row.polling ? row.polling : row.signIn)
            << row.name;
    }
}

} // namespace
} // namespace Varnel
