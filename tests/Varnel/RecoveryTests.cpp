#include "ControllerBench.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Varnel {
namespace {

using Simulator::FaultKind;
using Testing::settle;
using Testing::waitUntil;

/// What the application does by itself after a failure, for weeks if need be.
class RecoveryTest : public testing::Test, protected Testing::ControllerBench {
protected:
    static constexpr char credentials[] = "Sign-in failed. Check email/password in Profile and reconnect.";
    static constexpr char expired[] = "Session expired or credentials changed. Open Settings and reconnect.";

    /// No request leaves for the duration.
    void expectQuiet(Seconds duration) {
        const std::size_t before = requestCount();
        time.advance(duration);
        EXPECT_FALSE(waitUntil([&] { return requestCount() != before; }, 100));
    }

    /// The sign-ins so far; each begins with this path.
    int signIns() { return requestsTo("/v1/OpenApi/GetToken"); }

    /// Answers of the fault's kind end a sign-in; waits until it has.
    void launchIntoFailure(FaultKind kind, std::optional<int> status, const char* path) {
        storeAccount();
        failRequests(kind, status, path);
        launch();
        EXPECT_TRUE(waitUntil([&] { return controller->values().errorMessage.has_value(); }));
    }
};

TEST_F(RecoveryTest, AStartThatNothingJudgedIsRepeatedWithTheBackOffUntilItConnects) {
    const struct {
        FaultKind kind;
        std::optional<int> status;
        const char* path;
    } rows[] = {
        {FaultKind::status, 503, "*"},
        {FaultKind::html, {}, "*"}, // a captive page
        {FaultKind::close, {}, "*"},
        {FaultKind::status, 503, "*PowerStation*"},
    };
    for (const auto& row : rows) {
        launchIntoFailure(row.kind, row.status, row.path);
        for (const double delay : {600.0, 1200.0}) {
            expectQuiet(Seconds(delay - 1));
            const std::size_t before = requestCount();
            time.advance(Seconds(1));
            EXPECT_TRUE(waitForRequests(before + 1)) << "not repeated after " << delay;
            settle();
            EXPECT_TRUE(waitUntil([&] { return time.scheduledDelays().back() == delay * 2; }));
        }
        simulator.behaviour().faults.clear();
        time.advance(Seconds(2400));
        EXPECT_TRUE(waitForTitle("3.42 kW"));
        EXPECT_EQ(controller->values().errorMessage, std::nullopt);
        failRequests(FaultKind::status, 503);
        Testing::await(controller->applyPreferences(currentDraft()));
        EXPECT_EQ(time.scheduledDelays().back(), 600) << "a success, and a save, begin the back-off anew";
        EXPECT_EQ(controller->preferencesCoordinator().window(), nullptr);
    }
}

TEST_F(RecoveryTest, ASaveThatEndsTheOneThatWasAboutToPollPollsInItsPlace) {
    storeAccount();
    failRequests(FaultKind::delay, std::nullopt, "*GetUserPowerStation");
    simulator.behaviour().faults.front().delay = std::chrono::milliseconds(150);
    launch();
    EXPECT_TRUE(waitUntil([&] { return requestsTo("GetUserPowerStation") == 1; }));
    PreferencesDraft draft = currentDraft();
    draft.baseURL = QStringLiteral("www.example.com/api/");
    Testing::await(controller->applyPreferences(draft));
    EXPECT_TRUE(controller->isPolling()) << "connected, and nothing would ever be asked";
}

TEST_F(RecoveryTest, ARefusedPasswordIsNeverSentAgainByItself) {
    storeAccount();
    simulator.behaviour().password = QStringLiteral("changed");
    launch();
    EXPECT_TRUE(waitForError(credentials));
    systemEvents.networkReachable();
    systemEvents.resume();
    expectQuiet(Seconds(3 * 86400.0));
}

TEST_F(RecoveryTest, APasswordRefusedInARenewalRestsForTwelveHoursOrUntilTheUserAsks) {
    launchConnected();
    simulator.expireSessions();
    simulator.behaviour().password = QStringLiteral("changed");
    time.advance(Seconds(300));
    EXPECT_TRUE(waitForError(expired));
    const int once = signIns();
    const auto pollFor = [&](double hours) {
        for (const Timestamp end = time.now() + Seconds(hours * 3600); time.now() < end;) {
            const std::size_t before = requestCount();
            time.advanceToNextTimer();
            waitUntil([&] { return requestCount() > before && time.pendingTimers() > 1; }, 500);
        }
    };
    pollFor(11);
    EXPECT_EQ(signIns(), once);
    EXPECT_EQ(controller->values().errorMessage, QString::fromUtf8(expired));
    item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(waitUntil([&] { return signIns() > once; }));
    settle();
    const int afterRefresh = signIns();
    pollFor(13);
    EXPECT_EQ(signIns() - afterRefresh, 1) << "one more try after twelve hours";
    simulator.behaviour().password = QStringLiteral("sunshine");
    item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(waitUntil([&] { return !controller->values().errorMessage; }));
}

TEST_F(RecoveryTest, AFailedPollIsRepeatedOnceWhenTheNetworkReturns) {
    launchConnected();
    systemEvents.networkReachable(); // nothing has failed: nothing is asked
    expectQuiet(Seconds(0));
    failRequests(FaultKind::close);
    for (const double delay : {300.0, 600.0, 1200.0}) {
        time.advance(Seconds(delay));
        EXPECT_TRUE(waitUntil([&] { return std::ranges::count(time.scheduledDelays(), 2 * delay) > 0; }));
    }
    EXPECT_EQ(controller->values().errorMessage,
              QStringLiteral("Offline. Check your internet connection and try Refresh."));
    simulator.behaviour().faults.clear();
    simulator.behaviour().powerScript = {1.25};
    systemEvents.networkReachable();
    EXPECT_TRUE(waitForTitle("1.25 kW"));
    EXPECT_EQ(controller->values().errorMessage, std::nullopt);
}

TEST_F(RecoveryTest, AReadingThatHasGrownOldLooksOldWhilePollsFailAndOnlyThen) {
    launchConnected();
    time.jumpTo(time.now() + Seconds(3000)); // the machine slept: nothing has failed
    systemEvents.isReachable = false;
    systemEvents.resume();
    EXPECT_EQ(controller->presentation().outdatedLine, std::nullopt);
    systemEvents.isReachable = true;
    systemEvents.networkReachable();
    EXPECT_TRUE(waitUntil([&] { return controller->presentation().lastUpdatedValue == QStringLiteral("12:50"); }));

    failRequests(FaultKind::status, 500);
    time.advance(Seconds(300));
    EXPECT_TRUE(waitUntil([&] { return controller->values().errorMessage.has_value(); }));
    EXPECT_EQ(controller->presentation().outdatedLine, std::nullopt) << "one missing reading is no old one";
    time.advance(Seconds(300));
    EXPECT_EQ(controller->presentation().outdatedLine, QStringLiteral("Last reading at 12:50"));
    EXPECT_EQ(title(), QStringLiteral("3.42 kW"));
    EXPECT_EQ(item->toolTip, QStringLiteral("Current Output: 3.42 kW\nLast reading at 12:50"));
    simulator.behaviour().faults.clear();
    item->choose(StatusMenuCommand::refresh);
    EXPECT_TRUE(waitUntil([&] { return !controller->presentation().outdatedLine; }));
}

TEST_F(RecoveryTest, TheNextPollWaitsAsLongAsTheServiceAsksFor) {
    launchConnected();
    failRequests(FaultKind::status, 429);
    simulator.behaviour().faults.front().retryAfter = QStringLiteral("3000");
    time.advance(Seconds(300));
    EXPECT_TRUE(waitUntil([&] { return time.scheduledDelays().back() == 3000; }));
}

} // namespace
} // namespace Varnel
