#include "ControllerBench.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Simulator::Fault;
using Simulator::FaultKind;
using Testing::ControllerBench;

Fault status(int code) {
    Fault fault;
    fault.status = code;
    return fault;
}

Fault kind(FaultKind kind) {
    Fault fault;
    fault.kind = kind;
    return fault;
}

struct Row {
    const char* name;
    Fault fault;
    const char* line;
};

constexpr char unavailable[] = "SEMS service is temporarily unavailable. Try again shortly.";
constexpr char rateLimit[] = "SEMS rate limit reached. Please wait a moment and retry.";

TEST(ErrorLines, WhilePollingEachFaultOfTheServiceHasItsLine) {
    const Row rows[] = {
        {"401 also for the renewal", status(401),
         "Session expired or credentials changed. Open Settings and reconnect."},
        {"404", status(404), "SEMS request failed (HTTP 404)."},
        {"429", status(429), rateLimit},
        {"500", status(500), unavailable},
        {"closed", kind(FaultKind::close), "Offline. Check your internet connection and try Refresh."},
        {"cut", kind(FaultKind::cut), "Offline. Check your internet connection and try Refresh."},
        {"no power", kind(FaultKind::emptyData), "Could not find instantaneous power in SEMS response."},
        {"service failure", kind(FaultKind::envelope), "SEMS API error."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ControllerBench bench;
        bench.launchConnected();
        bench.simulator.behaviour().faults = {row.fault};
        bench.time.advance(Seconds(300));
        EXPECT_TRUE(bench.waitForError(row.line))
            << qPrintable(bench.controller->lastErrorMessage().value_or(QString()));
        EXPECT_EQ(bench.title(), QStringLiteral("3.42 kW"));
        EXPECT_EQ(bench.controller->presentation().errorLine, bench.controller->lastErrorMessage());
    }
}

TEST(ErrorLines, WhileSigningInTheStationListHasItsOwn) {
    const Row rows[] = {
        {"404", status(404), "SEMS request failed (HTTP 404)."},
        {"429", status(429), rateLimit},
        {"503", status(503), unavailable},
        {"401", status(401), "Sign-in failed. Check email/password in Profile and reconnect."},
        {"no station", kind(FaultKind::emptyList),
         "No power station found. Verify account access or set Station ID in Profile."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ControllerBench bench;
        bench.storeAccount();
        Fault fault = row.fault;
        fault.path = QStringLiteral("*PowerStation*");
        bench.simulator.behaviour().faults = {fault};
        bench.launch();
        EXPECT_TRUE(bench.waitForError(row.line))
            << qPrintable(bench.controller->lastErrorMessage().value_or(QString()));
        EXPECT_FALSE(bench.controller->semsSession().has_value());
    }
}

TEST(ErrorLines, WhileSigningInEveryFailureOfBothFamiliesIsOneLine) {
    for (const Fault& fault : {status(500), status(429), kind(FaultKind::close), kind(FaultKind::notJSON)}) {
        ControllerBench bench;
        bench.storeAccount();
        bench.simulator.behaviour().faults = {fault};
        bench.launch();
        EXPECT_TRUE(bench.waitForError("Sign-in failed. Check email/password in Profile and reconnect."));
    }
}

} // namespace
} // namespace Varnel
