#include <VarnelPolling/PowerPollingService.h>

#include <VarnelShared/URLError.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <gmock/gmock.h>

#include <QCoroFuture>
#include <QPromise>

#include <deque>
#include <stdexcept>

namespace Varnel {
namespace {

using testing::ElementsAre;
using Outcome = Result<PowerReading>;

QCoro::Task<Outcome> outcomeOf(QFuture<Outcome> future) {
    co_return co_await future;
}

/// A service whose fetches stay open until the test completes them, the oldest first.
class PowerPollingServiceTest : public testing::Test {
protected:
    std::shared_ptr<PowerPollingService> makeService(Seconds interval = Seconds(300)) {
        return std::make_shared<PowerPollingService>(
            interval, [this] { return fetch(); },
            [this](const Outcome& outcome) {
                updates.push_back(outcome ? outcome->kilowatts : -1);
                onUpdate();
            },
            time);
    }

    QCoro::Task<Outcome> fetch() {
        if (++fetches == throwingFetch) {
            throw std::runtime_error("escaped");
        }
        m_open.emplace_back().start();
        return outcomeOf(m_open.back().future());
    }

    void start() {
        service->start();
        time.advance(Seconds(0.1));
    }

    void complete(const Outcome& outcome) {
        ASSERT_FALSE(m_open.empty());
        QPromise<Outcome> promise = std::move(m_open.front());
        m_open.pop_front();
        promise.addResult(outcome);
        promise.finish();
        Testing::settle();
    }
    void succeed(double kilowatts = 1) { complete(PowerReading{kilowatts, {}, QStringLiteral("station"), {}}); }
    void fail() { complete(failure(URLError{URLError::Code::timedOut, QString()})); }

    Testing::HandTurnedTime time;
    int fetches = 0;
    int throwingFetch = 0;       ///< counted from 1
    std::vector<double> updates; ///< the kilowatts of each reading, -1 for each error
    std::function<void()> onUpdate = [] {};
    std::shared_ptr<PowerPollingService> service = makeService();

private:
    std::deque<QPromise<Outcome>> m_open;
};

TEST_F(PowerPollingServiceTest, BacksOffToSixteenIntervalsAndRecovers) {
    onUpdate = [this] { EXPECT_EQ(time.pendingTimers(), 0U) << "the update comes before the next timer"; };
    start();
    for (const double delay : {600, 1200, 2400, 4800, 4800}) {
        fail();
        const int before = fetches;
        time.advance(Seconds(delay - 1));
        EXPECT_EQ(fetches, before);
        time.advance(Seconds(1));
        EXPECT_EQ(fetches, before + 1);
    }
    succeed(2.5);
    time.advance(Seconds(300));
    fail();
    EXPECT_THAT(time.scheduledDelays(), ElementsAre(0.1, 600, 1200, 2400, 4800, 4800, 300, 600));
    EXPECT_THAT(updates, ElementsAre(-1, -1, -1, -1, -1, 2.5, -1));
}

TEST_F(PowerPollingServiceTest, AnAskedForDelayMovesTheNextPollBackButNeverForwardAndNotForever) {
    const std::pair<double, double> rows[] = {{30, 600}, {900, 1200}, {4000, 4000}, {1e9, 4800}};
    start();
    for (const auto& [asked, expected] : rows) {
        onUpdate = [&, delay = asked] { service->waitAtLeast(Seconds(delay)); };
        fail();
        EXPECT_EQ(time.scheduledDelays().back(), expected) << asked;
        onUpdate = [] {};
        time.advance(Seconds(expected));
    }
    fail();
    EXPECT_EQ(time.scheduledDelays().back(), 4800) << "what was asked for counts for one poll";
    time.advance(Seconds(4800));
    succeed();
}

TEST_F(PowerPollingServiceTest, WhatFailsIsRepeatedAtOnceWhenItMaySucceedAgain) {
    start();
    service->repeatIfFailing(); // during the first poll, which fails
    fail();
    EXPECT_EQ(time.scheduledDelays().back(), 0.1);
    time.advance(Seconds(0.1));
    fail();
    EXPECT_EQ(time.scheduledDelays().back(), 1200) << "repeated once, not for ever";
    service->repeatIfFailing();
    Testing::settle();
    EXPECT_EQ(fetches, 3);
    service->repeatIfFailing();
    succeed();
    EXPECT_EQ(time.scheduledDelays().back(), 300);
    service->repeatIfFailing(); // nothing fails
    Testing::settle();
    EXPECT_EQ(fetches, 3);
}

TEST_F(PowerPollingServiceTest, DelaysBelowATenthOfASecondAreRaisedAndASecondStartIsIgnored) {
    service = makeService(Seconds(-5));
    service->start();
    start();
    succeed();
    EXPECT_THAT(time.scheduledDelays(), ElementsAre(0.1, 0.1));
}

TEST_F(PowerPollingServiceTest, StopForgetsFailuresAndLetsTheFetchInFlightReport) {
    for (int run = 0; run < 2; ++run) {
        start();
        fail();
        service->stop();
        EXPECT_EQ(time.pendingTimers(), 0U);
    }
    EXPECT_THAT(time.scheduledDelays(), ElementsAre(0.1, 600, 0.1, 600));
    start();
    service->stop();
    start();
    EXPECT_EQ(fetches, 4) << "a restart may fetch beside the one still completing";
    service->stop();
    succeed(7);
    succeed(8);
    EXPECT_THAT(updates, ElementsAre(-1, -1, 7, 8));
    EXPECT_EQ(time.pendingTimers(), 0U);
}

TEST_F(PowerPollingServiceTest, RefreshPollsOnlyWhileRunningAndNeverBesideAnother) {
    service->refreshNow();
    time.advance(Seconds(10));
    EXPECT_EQ(fetches, 0);

    service->start();
    service->refreshNow();
    EXPECT_EQ(fetches, 0) << "a refresh is queued, not run on the spot";
    Testing::settle();
    EXPECT_EQ(fetches, 1);
    service->refreshNow();
    time.advance(Seconds(1)); // the first timer fires meanwhile
    EXPECT_EQ(fetches, 1) << "dropped, not queued";
    succeed();
    Testing::settle();
    EXPECT_EQ(fetches, 1);

    time.advance(Seconds(200));
    service->refreshNow();
    Testing::settle();
    EXPECT_EQ(time.pendingTimers(), 1U) << "the pending timer stays until the refresh succeeds";
    succeed();
    time.advance(Seconds(299));
    EXPECT_EQ(fetches, 2);
    time.advance(Seconds(1));
    EXPECT_EQ(fetches, 3);
    succeed();
}

TEST_F(PowerPollingServiceTest, ReleasedItDoesNothingMoreThanReportTheFetchInFlight) {
    service->start();
    service->refreshNow();
    service.reset();
    time.advance(Seconds(1000));
    EXPECT_EQ(fetches, 0);

    service = makeService();
    const std::weak_ptr<PowerPollingService> observed = service;
    start();
    service.reset();
    succeed(4);
    EXPECT_THAT(updates, ElementsAre(4));
    EXPECT_TRUE(observed.expired());
    EXPECT_EQ(time.pendingTimers(), 0U);
}

TEST_F(PowerPollingServiceTest, AnExceptionOutOfAHandlerEndsNothing) {
    throwingFetch = 1;
    onUpdate = [] { throw std::runtime_error("escaped"); };
    start();
    EXPECT_THAT(updates, ElementsAre(-1));
    time.advance(Seconds(600));
    succeed(3);
    EXPECT_THAT(updates, ElementsAre(-1, 3));
    EXPECT_THAT(time.scheduledDelays(), ElementsAre(0.1, 600, 300));
}

TEST_F(PowerPollingServiceTest, TheUpdateHandlerMayStopAndReleaseIt) {
    onUpdate = [this] {
        service->stop();
        service.reset();
    };
    start();
    fail();
    EXPECT_EQ(time.pendingTimers(), 0U);
}

} // namespace
} // namespace Varnel
