#include <VarnelSEMS/SEMSAPIClient.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(AttemptOutcome, TellsTheLastFailureUnlessAnotherMattersMore) {
    const Error refused = SEMSAPIError::authenticationFailed();
    const Error gone = SEMSAPIError::networkStatus(404, {});
    const Error busy = SEMSAPIError::networkStatus(429, {}, std::chrono::seconds(120));
    const Error busyForLess = SEMSAPIError::networkStatus(503, {}, std::chrono::seconds(60));
    const Error empty = SEMSAPIError::noPowerStation();
    const struct {
        std::vector<Error> failures;
        bool carriedSession;
        SEMSAPIError error;
    } rows[] = {
        {{busy, gone, busyForLess, gone}, true, SEMSAPIError::networkStatus(404, {}, std::chrono::seconds(120))},
        {{busy, empty}, true, SEMSAPIError::noPowerStation()},
        {{gone, refused, busy}, true, SEMSAPIError::authenticationFailed()},
        {{refused, gone}, false, SEMSAPIError::networkStatus(404, {})},
        {{}, true, SEMSAPIError::invalidResponse()},
    };
    for (const auto& row : rows) {
        AttemptOutcome outcome{std::nullopt, row.failures, row.carriedSession};
        EXPECT_EQ(*std::move(outcome).result().error().as<SEMSAPIError>(), row.error) << row.failures.size();
    }
}

} // namespace
} // namespace Varnel
