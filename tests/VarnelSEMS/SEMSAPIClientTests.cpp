#include <VarnelSEMS/SEMSAPIClient.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

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
        const AttemptOutcome outcome{false, row.failures, row.carriedSession};
        EXPECT_EQ(*outcome.result().error().as<SEMSAPIError>(), row.error) << row.failures.size();
    }
}

/// Answers on the spot.
class Answering final : public HTTPSession {
public:
    explicit Answering(QByteArray answer)
        : body(std::move(answer)) {}
    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest /*request*/) override { co_return HTTPResponse{200, {}, body}; }
    QByteArray body;
};

TEST(SEMSAPIClient, ALargeReplyIsReadWhileTheEventLoopGoesOn) {
    const Testing::HandTurnedTime time;
    const std::pair<int, bool> rows[] = {{1000, true}, {300'000, false}};
    for (const auto& [size, isReadAtOnce] : rows) {
        Answering http(R"({"data":{"token":"t","pwId":"a","eday":4,"notes":[)" + QByteArray("[],").repeated(size / 3) +
                       R"([]],"pac":3420}})");
        const auto client = std::make_shared<SEMSAPIClient>(QUrl(QStringLiteral("https://own.test/")), http, time);
        auto signIn = client->signIn(QStringLiteral("me"), QStringLiteral("secret"));
        EXPECT_EQ(signIn.isReady(), isReadAtOnce) << size;
        const auto session = Testing::await(std::move(signIn));
        ASSERT_TRUE(session);
        const auto reading = Testing::await(client->fetchCurrentPower(*session, std::nullopt));
        ASSERT_TRUE(reading) << reading.error().localizedDescription().toStdString();
        EXPECT_EQ(*reading, (PowerReading{3.42, 4.0, QStringLiteral("a"), time.now()}));
    }
}

TEST(SEMSAPIClient, AMessageOfMillionsOfCharactersIsCutButNoSecretInIt) {
    const Testing::HandTurnedTime time;
    Answering http(R"({"hasError":true,"msg":")" + QByteArray("no  ").repeated(999) + "secret" +
                   QByteArray("no ").repeated(100'000) + R"("})");
    const auto client = std::make_shared<SEMSAPIClient>(QUrl(QStringLiteral("https://own.test/")), http, time);
    const auto session = Testing::await(client->signIn(QStringLiteral("me"), QStringLiteral("secret")));
    EXPECT_LT(session.error().localizedDescription().size(), 5 * 5000);
    EXPECT_FALSE(session.error().localizedDescription().contains(QLatin1String("secr")));
}

} // namespace
} // namespace Varnel
