#include <simulator/SEMSService.h>

#include "../Support/HandTurnedTime.h"

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

constexpr const char* anonymousHeader =
    R"({"uid":"","timestamp":0,"token":"","client":"web","version":"v2.0.4","language":"en"})";
constexpr const char* formType = "application/x-www-form-urlencoded";
constexpr const char* jsonType = "application/json";

ServiceRequest post(const char* target, const char* type, QByteArray body, QByteArray token = {}) {
    return {"POST", target, {{"Host", "127.0.0.1:1"}, {"Content-Type", type}, {"Token", token}}, body, {}, 0};
}

JSON bodyOf(const Reply& reply) {
    return parseJSON(reply.body).value_or(JSON());
}

class SEMSServiceTest : public testing::Test {
protected:
    JSON signIn(const char* target = "/api/v2/Common/CrossLogin") {
        return bodyOf(
            service.answer(post(target, formType, "account=demo%40example.com&pwd=sunshine", anonymousHeader)));
    }

    Reply detail(const JSON& signInReply, const char* target) {
        return service.answer(post(target, jsonType, R"({"powerStationId":"6f1c2a34-58be-4d0e-9a57-2b8c41d7e001"})",
                                   serializedJSON(signInReply["data"])));
    }

    Testing::HandTurnedTime time;
    SEMSService service{time};
};

TEST_F(SEMSServiceTest, APortalSessionCountsWithAllItsPartsAndUntilItExpires) {
    JSON session = signIn();
    const char* target = "/api/v1/PowerStation/GetMonitorDetailByPowerstationId";
    EXPECT_EQ(bodyOf(detail(session, target))["code"], "0");

    JSON altered = session;
    altered["data"]["timestamp"] = 1;
    EXPECT_EQ(detail(altered, target).status, 401);

    service.behaviour().expiry = Expiry::envelope;
    service.sessions().expireAll();
    EXPECT_EQ(bodyOf(detail(session, target))["code"], 100002);
}

TEST_F(SEMSServiceTest, ARegionalSessionLivesInItsRegion) {
    service.behaviour().region = QStringLiteral("eu");
    const JSON session = signIn();
    EXPECT_EQ(session["api"], "http://127.0.0.1:1/eu/api/");
    EXPECT_EQ(detail(session, "/api/v2/PowerStation/GetMonitorDetailByPowerstationId").status, 401);
    EXPECT_EQ(detail(session, "/eu/api/v2/PowerStation/GetMonitorDetailByPowerstationId").status, 200);
}

TEST_F(SEMSServiceTest, WhatIsNotServedIsNotFound) {
    const char* body = R"({"account":"demo@example.com","pwd":"sunshine"})";
    EXPECT_EQ(service.answer(post("/api/api/v1/OpenApi/GetToken", jsonType, body)).status, 200);
    EXPECT_EQ(service.answer(post("/api/OpenApi/GetToken", jsonType, body)).status, 200);
    EXPECT_EQ(service.answer(post("/OpenApi/GetToken", jsonType, body)).status, 404);
    EXPECT_EQ(service.answer(post("/api/OpenApi/GetPowerStationMonitorDetail", jsonType, body)).status, 405);
    service.behaviour().families = ServedFamilies::portal;
    EXPECT_EQ(service.answer(post("/api/OpenApi/GetToken", jsonType, body)).status, 404);
}

TEST_F(SEMSServiceTest, AFaultMeetsWhatItNamesAsOftenAsItSays) {
    Fault fault;
    fault.path = QStringLiteral("*/PowerStation/*");
    fault.contentType = QStringLiteral("json");
    fault.status = 503;
    fault.count = 1;
    service.behaviour().faults = {fault};
    const JSON session = signIn();
    EXPECT_EQ(session["code"], 0);
    const char* target = "/api/PowerStation/GetMonitorDetailByPowerstationId";
    EXPECT_EQ(detail(session, target).status, 503);
    EXPECT_EQ(detail(session, target).status, 200);
}

TEST_F(SEMSServiceTest, ADetailHasTheSizeOfARealOne) {
    const JSON session = signIn();
    const char* target = "/api/v2/PowerStation/GetMonitorDetailByPowerstationId";
    EXPECT_NEAR(detail(session, target).body.size(), 3000, 500);
    service.behaviour().shape.detailSize = DetailSize::large;
    EXPECT_NEAR(detail(session, target).body.size(), 24000, 2000);
}

} // namespace
} // namespace Varnel::Simulator
