#include "EndToEndTest.h"

#include <VarnelPolling/PowerPollingService.h>

namespace Varnel {
namespace {

class PollingEndToEnd : public EndToEndTest {};

TEST_F(PollingEndToEnd, GivesReadingsAndWaitsLongerWhileTheSessionHasExpired) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    simulator.behaviour().powerScript = {1.25, 2.5};
    std::vector<Result<PowerReading>> outcomes;
    const auto polling = std::make_shared<PowerPollingService>(
        Seconds(300), [this, session] { return client->fetchCurrentPower(session, QString::fromLatin1(stationID)); },
        [&outcomes](Result<PowerReading> outcome) { outcomes.push_back(std::move(outcome)); }, time);
    const auto passAndPoll = [&](double seconds) {
        const std::size_t before = outcomes.size();
        time.advance(Seconds(seconds));
        EXPECT_TRUE(Testing::waitUntil([&] { return outcomes.size() == before + 1; }));
    };

    polling->start();
    passAndPoll(0.1);
    EXPECT_DOUBLE_EQ(outcomes.back()->kilowatts, 1.25);
    passAndPoll(300);
    EXPECT_DOUBLE_EQ(outcomes.back()->kilowatts, 2.5);
    simulator.expireSessions();
    passAndPoll(300);
    EXPECT_FALSE(outcomes.back());
    EXPECT_THAT(time.scheduledDelays(), testing::ElementsAre(0.1, 300, 300, 600));
}

} // namespace
} // namespace Varnel
