#include <simulator/SEMSService.h>

#include "../Support/HandTurnedTime.h"

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

constexpr const char* signInPath = "/api/v2/Common/CrossLogin";
constexpr const char* detailPath = "/api/v2/PowerStation/GetMonitorDetailByPowerstationId";
const QByteArray anonymousHeader =
    R"({"uid":"","timestamp":0,"token":"","client":"web","version":"v2.0.4","language":"en"})";

class SEMSServiceTest : public testing::Test {
protected:
    Reply posted(const QByteArray& path, const QByteArray& token, const QByteArray& body) {
        const char* type = "application/json";
        return service.answer(
            {"POST", path, {{"Host", "127.0.0.1:1"}, {"Content-Type", type}, {"Token", token}}, body, {}, 0});
    }
    JSON signIn() {
        const Reply reply = posted(signInPath, anonymousHeader, R"({"account":"demo@example.com","pwd":"sunshine"})");
        return parseJSON(reply.body).value();
    }
    Reply detail(const JSON& signInReply, const QByteArray& path = detailPath) {
        return posted(path, serializedJSON(signInReply["data"]),
                      R"({"powerStationId":"6f1c2a34-58be-4d0e-9a57-2b8c41d7e001"})");
    }
    static JSON codeOf(const Reply& reply) { return parseJSON(reply.body).value()["code"]; }

    Testing::HandTurnedTime time;
    SEMSService service{time};
};

TEST_F(SEMSServiceTest, APortalSessionCountsWithAllItsPartsInItsRegionAndUntilItExpires) {
    service.behaviour().region = QStringLiteral("eu");
    const JSON session = signIn();
    EXPECT_EQ(session["api"], "http://127.0.0.1:1/eu/api/");
    EXPECT_EQ(codeOf(detail(session)), 100002);
    EXPECT_EQ(codeOf(detail(session, QByteArray("/eu") + detailPath)), "0");

    JSON altered = session;
    altered["data"]["timestamp"] = 1;
    EXPECT_EQ(codeOf(detail(altered, QByteArray("/eu") + detailPath)), 100002);
}

TEST_F(SEMSServiceTest, ASessionEndsWhenItIsToldToAndIsRefusedAsChosen) {
    const struct {
        Expiry expiry;
        int status;
        JSON code;
    } refusals[] = {{Expiry::code100002, 200, 100002},
                    {Expiry::text100002, 200, "100002"},
                    {Expiry::code100001, 200, 100001},
                    {Expiry::status401, 401, nullptr}};
    for (const auto& row : refusals) {
        SCOPED_TRACE(qPrintable(rawValue(row.expiry)));
        service.behaviour().expiry = row.expiry;
        const JSON session = signIn();
        service.sessions().expireAll();
        EXPECT_EQ(detail(session).status, row.status);
        EXPECT_EQ(codeOf(detail(session)), row.code);
    }
    service.behaviour().sessionLifetime = Seconds(2400);
    service.behaviour().sessionRequests = 3;
    const JSON aged = signIn();
    time.advance(Seconds(2399));
    EXPECT_EQ(detail(aged).status, 200);
    time.advance(Seconds(1));
    EXPECT_EQ(detail(aged).status, 401);
    const JSON used = signIn();
    for (const int status : {200, 200, 200, 401, 401}) {
        EXPECT_EQ(detail(used).status, status);
    }
}

TEST_F(SEMSServiceTest, WhatIsNotServedIsNotFound) {
    const std::pair<const char*, int> rows[] = {{"/api/api/v1/OpenApi/GetToken", 200},
                                                {"/api/OpenApi/GetToken", 200},
                                                {"/OpenApi/GetToken", 404},
                                                {"/api/OpenApi/GetPowerStationMonitorDetail", 405}};
    for (const auto& [path, status] : rows) {
        EXPECT_EQ(posted(path, {}, R"({"account":"demo@example.com","pwd":"sunshine"})").status, status) << path;
    }
    service.behaviour().families = ServedFamilies::portal;
    EXPECT_EQ(posted("/api/OpenApi/GetToken", {}, "{}").status, 404);
    service.behaviour().servedPaths = QStringList{QStringLiteral("*CrossLogin"), QStringLiteral("*/v1/*Detail*")};
    const JSON session = signIn();
    EXPECT_EQ(detail(session).status, 404);
    EXPECT_EQ(detail(session, "/api/v1/PowerStation/GetMonitorDetailByPowerstationId").status, 200);
}

TEST_F(SEMSServiceTest, AFaultHoldsBetweenItsTimesOfDay) {
    const struct {
        const char* name;
        QTime from;
        QTime to;
        std::vector<int> disturbedHours;
    } rows[] = {{"within the day", QTime(9, 0), QTime(11, 0), {9, 10}},
                {"over midnight", QTime(22, 0), QTime(2, 0), {0, 1, 22, 23}},
                {"until midnight", QTime(23, 0), QTime(0, 0), {23}}};
    const JSON session = signIn();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        service.behaviour().faults.assign(1, {});
        service.behaviour().faults.front().from = row.from;
        service.behaviour().faults.front().to = row.to;
        std::vector<int> disturbedHours;
        for (int hour = 0; hour < 24; ++hour) {
            time.jumpTo(Timestamp::fromDateTime(QDateTime(QDate(2026, 6, 2), QTime(hour, 0))));
            if (detail(session).status != 200) {
                disturbedHours.push_back(hour);
            }
        }
        EXPECT_EQ(disturbedHours, row.disturbedHours);
    }
}

TEST_F(SEMSServiceTest, SignInsAreCountedAsTheirRepliesJudgeThePassword) {
    using Outcome = SignInAttempt::Outcome;
    const auto attempt = [this](const char* path, const char* password) {
        posted(path, anonymousHeader, serializedJSON({{"account", "demo@example.com"}, {"pwd", password}}));
    };
    const char* tokenPath = "/api/OpenApi/GetToken";
    attempt(tokenPath, "wrong");
    attempt(signInPath, "wrong"); // the same sign-in's next variant
    EXPECT_TRUE(service.signIns().repeatedAfterRejection().empty());
    time.advance(Seconds(300));
    attempt(tokenPath, "sunshine");
    Fault& fault = service.behaviour().faults.emplace_back();
    for (const FaultKind kind : {FaultKind::status, FaultKind::cut, FaultKind::silence}) {
        fault.kind = kind;
        attempt(signInPath, "sunshine");
    }
    service.behaviour().faults.clear();
    EXPECT_EQ(service.signIns().count(Family::token, Outcome::accepted), 1);
    EXPECT_EQ(service.signIns().count(Family::token, Outcome::rejected), 1);
    EXPECT_EQ(service.signIns().count(Family::portal, Outcome::rejected), 1);
    EXPECT_EQ(service.signIns().count(Family::portal, Outcome::unjudged), 3);

    attempt(signInPath, "wrong");
    const SignInAttempt repeated{service.now(), Family::portal, QStringLiteral("demo@example.com"),
                                 QStringLiteral("wrong"), Outcome::rejected};
    EXPECT_EQ(service.signIns().repeatedAfterRejection(), std::vector{repeated});

    service.behaviour().password = QStringLiteral("wrong");
    attempt(signInPath, "wrong");
    const std::size_t repeats = service.signIns().repeatedAfterRejection().size();
    time.advance(Seconds(300));
    attempt(signInPath, "wrong");
    EXPECT_EQ(service.signIns().repeatedAfterRejection().size(), repeats) << "it was accepted meanwhile";
}

TEST_F(SEMSServiceTest, AFaultMeetsWhatItNamesAsOftenAsItSays) {
    Fault& fault = service.behaviour().faults.emplace_back();
    fault.path = QStringLiteral("*/PowerStation/*");
    fault.count = 0;
    const JSON session = signIn();
    EXPECT_EQ(detail(session).status, 200);
    service.behaviour().faults.front().count = 1;
    service.behaviour().faults.front().retryAfter = QStringLiteral("120");
    const Reply disturbed = detail(session);
    EXPECT_EQ(disturbed.status, 500);
    EXPECT_EQ(disturbed.headers, (decltype(disturbed.headers){{"Retry-After", "120"}}));
    EXPECT_NEAR(detail(session).body.size(), 3500, 500);
    service.behaviour().shape.detailSize = DetailSize::large;
    EXPECT_NEAR(detail(session).body.size(), 24000, 2000);
}

} // namespace
} // namespace Varnel::Simulator
