#include <simulator/SEMSSimulator.h>

#include "../Support/EventLoop.h"
#include "../Support/Files.h"
#include "../Support/HandTurnedTime.h"

#include <VarnelSEMS/Linux/NetworkHTTPSession.h>
#include <VarnelShared/URLError.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

class SEMSSimulatorTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(simulator.listen(0)); }

    Result<HTTPResponse> answer(const QByteArray& method, const char* path, const QByteArray& body = {}) {
        HTTPRequest request;
        request.method = method;
        request.url = simulator.baseURL().resolved(QUrl(QLatin1String(path)));
        request.timeout = std::chrono::seconds(10);
        request.body = body;
        return Testing::await(http.send(request));
    }

    HTTPResponse asked(const QByteArray& method, const char* path, const QByteArray& body = {}) {
        return answer(method, path, body).value();
    }

    Testing::HandTurnedTime time;
    SEMSSimulator simulator{time};
    NetworkHTTPSession http;
};

TEST_F(SEMSSimulatorTest, ControlChangesAllOrNothing) {
    EXPECT_EQ(asked("POST", "/_control", R"({"account":"other","password":5})").statusCode, 400);
    EXPECT_EQ(simulator.behaviour().account, QStringLiteral("demo@example.com"));
    EXPECT_EQ(asked("POST", "/_control", R"({"powerKW":2.5,"expireSessions":true})").statusCode, 200);
    EXPECT_EQ(simulator.behaviour().powerScript, std::deque<double>{2.5});
    EXPECT_EQ(asked("GET", "/_control/other").statusCode, 404);
}

TEST_F(SEMSSimulatorTest, RefusesConnectionsWhileItIsToldToAndKeepsItsPort) {
    const QUrl base = simulator.baseURL();
    const JSON refusal = {{"kind", "refuse"}, {"from", "13:00"}, {"to", "14:00"}};
    ASSERT_TRUE(simulator.change({{"faults", {refusal}}}));
    for (const bool refuses : {false, true, false}) {
        ASSERT_TRUE(simulator.followClock());
        const Result<HTTPResponse> got = answer("GET", "/api/");
        EXPECT_EQ(got.has_value(), !refuses) << qPrintable(time.now().toDateTime().toString());
        EXPECT_EQ(!got && got.error().as<URLError>()->code == URLError::Code::cannotConnectToHost, refuses);
        time.advance(Seconds(3600));
    }
    EXPECT_EQ(simulator.baseURL(), base);
}

TEST_F(SEMSSimulatorTest, TheLogHoldsRequestsAsTheyCameWithoutThoseForControl) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("requests.jsonl"));
    ASSERT_TRUE(simulator.log().writeTo(path));
    EXPECT_EQ(asked("GET", "/api/Unknown?a=%20b").statusCode, 404);
    const QByteArray log = asked("GET", "/_control/log").body;
    EXPECT_EQ(parseJSON(log).value().at("target"), "/api/Unknown?a=%20b");
    EXPECT_EQ(Testing::contentOf(path), log);
    asked("POST", "/_control", R"({"clearLog":true})");
    EXPECT_TRUE(simulator.log().requests().empty());
}

} // namespace
} // namespace Varnel::Simulator
