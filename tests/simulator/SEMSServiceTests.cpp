#include <simulator/SEMSService.h>

#include "../Support/HandTurnedTime.h"

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

constexpr const char* signInPath = "/api/v2/Common/CrossLogin";
constexpr const char* detailPath = "/api/v2/PowerStation/GetMonitorDetailByPowerstationId";

class SEMSServiceTest : public testing::Test {
protected:
    Reply posted(const QByteArray& path, const QByteArray& token, const QByteArray& body) {
        const char* type = "application/json";
        return service.answer(
            {"POST", path, {{"Host", "127.0.0.1:1"}, {"Content-Type", type}, {"Token", token}}, body, {}, 0});
    }
    JSON signIn() {
        const Reply reply = posted(
            signInPath, R"({"uid":"","timestamp":0,"token":"","client":"web","version":"v2.0.4","language":"en"})",
            R"({"account":"demo@example.com","pwd":"sunshine"})");
        return parseJSON(reply.body).value();
    }
    Reply detail(const JSON& signInReply, const QByteArray& path = detailPath) {
        return posted(path, serializedJSON(signInReply["data"]),
                      R"({"powerStationId":"6f1c2a34-58be-4d0e-9a57-2b8c41d7e001"})");
    }

    Testing::HandTurnedTime time;
    SEMSService service{time};
};

TEST_F(SEMSServiceTest, APortalSessionCountsWithAllItsPartsInItsRegionAndUntilItExpires) {
    service.behaviour().region = QStringLiteral("eu");
    const JSON session = signIn();
    EXPECT_EQ(session["api"], "http://127.0.0.1:1/eu/api/");
    EXPECT_EQ(detail(session).status, 401);
    EXPECT_EQ(detail(session, QByteArray("/eu") + detailPath).status, 200);

    JSON altered = session;
    altered["data"]["timestamp"] = 1;
    EXPECT_EQ(detail(altered, QByteArray("/eu") + detailPath).status, 401);

    service.behaviour().expiry = Expiry::envelope;
    service.sessions().expireAll();
    EXPECT_EQ(parseJSON(detail(session).body).value()["code"], 100002);
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
}

TEST_F(SEMSServiceTest, AFaultMeetsWhatItNamesAsOftenAsItSays) {
    Fault& fault = service.behaviour().faults.emplace_back();
    fault.path = QStringLiteral("*/PowerStation/*");
    fault.count = 0;
    const JSON session = signIn();
    EXPECT_EQ(detail(session).status, 200);
    service.behaviour().faults.front().count = 1;
    EXPECT_EQ(detail(session).status, 500);
    EXPECT_NEAR(detail(session).body.size(), 3000, 500);
    service.behaviour().shape.detailSize = DetailSize::large;
    EXPECT_NEAR(detail(session).body.size(), 24000, 2000);
}

} // namespace
} // namespace Varnel::Simulator
