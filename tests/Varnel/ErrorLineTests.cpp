#include "ControllerBench.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Simulator::FaultKind;
using Testing::waitUntil;

class ErrorLinesTest : public testing::Test, protected Testing::ControllerBench {
protected:
    static constexpr char unavailable[] = "SEMS service is temporarily unavailable. Try again shortly.";
    static constexpr char rateLimit[] = "SEMS rate limit reached. Please wait a moment and retry.";
    static constexpr char offline[] = "Offline. Check your internet connection and try Refresh.";
    static constexpr char credentials[] = "Sign-in failed. Check email/password in Profile and reconnect.";
};

TEST_F(ErrorLinesTest, WhilePollingEachFaultHasItsLineBesideTheLastValueUntilTheNextReading) {
    const struct {
        FaultKind kind;
        std::optional<int> status;
        const char* line;
    } rows[] = {
        {FaultKind::status, 404, "SEMS request failed (HTTP 404)."},
        {FaultKind::status, 429, rateLimit},
        {FaultKind::status, 500, unavailable},
        {FaultKind::close, {}, offline},
        {FaultKind::cut, {}, offline},
        {FaultKind::emptyData, {}, "Could not find instantaneous power in SEMS response."},
        {FaultKind::envelope, {}, "SEMS API error."},
        // It meets the renewal of the session too.
        {FaultKind::status, 401, "Session expired or credentials changed. Open Settings and reconnect."},
    };
    launchConnected();
    for (const auto& row : rows) {
        failRequests(row.kind, row.status);
        item->choose(StatusMenuCommand::refresh);
        EXPECT_TRUE(waitForError(row.line)) << qPrintable(controller->values().errorMessage.value_or(QString()));
        EXPECT_EQ(title(), QStringLiteral("3.42 kW"));
        EXPECT_EQ(controller->presentation().errorLine, controller->values().errorMessage);
        simulator.behaviour().faults.clear();
        item->choose(StatusMenuCommand::refresh);
        EXPECT_TRUE(waitUntil([this] { return !controller->values().errorMessage; })) << row.line;
    }
}

TEST_F(ErrorLinesTest, WhileSigningInTheStationListHasItsOwnAndAllElseIsOneLine) {
    const struct {
        const char* path;
        FaultKind kind;
        std::optional<int> status;
        const char* line;
    } rows[] = {
        {"*PowerStation*", FaultKind::status, 404, "SEMS request failed (HTTP 404)."},
        {"*PowerStation*", FaultKind::status, 429, rateLimit},
        {"*PowerStation*", FaultKind::status, 503, unavailable},
        {"*PowerStation*", FaultKind::status, 401, credentials},
        {"*PowerStation*",
         FaultKind::emptyList,
         {},
         "No power station found. Verify account access or set Station ID in Profile."},
        {"*", FaultKind::status, 500, credentials},
        {"*", FaultKind::status, 429, credentials},
        {"*", FaultKind::close, {}, credentials},
        {"*", FaultKind::notJSON, {}, credentials},
    };
    storeAccount();
    for (const auto& row : rows) {
        failRequests(row.kind, row.status, row.path);
        launch();
        EXPECT_TRUE(waitForError(row.line)) << qPrintable(controller->values().errorMessage.value_or(QString()));
        EXPECT_FALSE(controller->semsSession().has_value());
    }
}

} // namespace
} // namespace Varnel
