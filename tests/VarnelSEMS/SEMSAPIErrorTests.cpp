#include <VarnelSEMS/SEMSAPIError.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/URLError.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(SEMSAPIError, TellsWhatMayPassByItself) {
    SEMSAPIError::AllSignInStrategiesFailed unjudged;
    unjudged.wasJudged = false;
    const std::pair<Error, bool> rows[] = {
        {URLError{URLError::Code::timedOut, {}}, true},
        {JSONError{QStringLiteral("parse error")}, true},
        {SEMSAPIError::networkStatus(302, {}), true},
        {SEMSAPIError::networkStatus(404, {}), false},
        {SEMSAPIError::networkStatus(429, {}), true},
        {SEMSAPIError::networkStatus(499, {}), false},
        {SEMSAPIError::networkStatus(500, {}), true},
        {SEMSAPIError{unjudged}, true},
        {SEMSAPIError::allSignInStrategiesFailed({}), false},
        {SEMSAPIError::authenticationFailed(), false},
        {SEMSAPIError::api({}), false},
        {SEMSAPIError::noPowerStation(), false},
    };
    for (const auto& [error, isPassing] : rows) {
        EXPECT_EQ(isTransient(error), isPassing) << error.localizedDescription().toStdString();
    }
}

} // namespace
} // namespace Varnel
