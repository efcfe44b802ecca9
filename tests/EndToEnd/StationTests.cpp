#include "EndToEndTest.h"

namespace Varnel {
namespace {

using namespace Qt::StringLiterals;

class StationsEndToEnd : public EndToEndTest {
protected:
    Result<std::vector<PowerStation>> stations(SEMSAuthMode mode) {
        return await(client->fetchPowerStations(signedIn(mode)));
    }
};

TEST_F(StationsEndToEnd, TheTokenAPIIsAskedByPOSTThenByGET) {
    answer(u"*PowerStation*"_s, 404);
    EXPECT_EQ(errorOf(stations(SEMSAuthMode::openAPI)), "SEMS API returned HTTP 404.");
    EXPECT_EQ(asked(), inPasses({"/api/api/v1/OpenApi/GetUserPowerStation", "/api/api/OpenApi/GetUserPowerStation",
                                 "/api/api/v1/OpenApi/GetPowerStationByUser", "/api/api/OpenApi/GetPowerStationByUser"},
                                "POST ", "GET "));
    const std::string token = simulator.log().requests().at(4).header("Token").toStdString();
    const std::string headers = "Token: " + token + "\nAuthorization: Bearer " + token + '\n';
    EXPECT_EQ(sent(0), "Accept: application/json\nContent-Type: application/json\n" + headers +
                           R"({"searchType":0,"page_index":1,"page_size":50})");
    EXPECT_EQ(sent(4), "Accept: application/json\n" + headers);
}

TEST_F(StationsEndToEnd, ThePortalIsAskedInJSONThenInAForm) {
    answer(u"*PowerStation*"_s, 500);
    EXPECT_FALSE(stations(SEMSAuthMode::legacyPortal));
    EXPECT_EQ(asked(), inPasses({"/api/v3/PowerStationQuery/QueryPowerStationMonitor",
                                 "/api/PowerStationMonitor/QueryPowerStationMonitorForApp",
                                 "/api/v2/PowerStationMonitor/QueryPowerStationMonitorForApp",
                                 "/api/v1/PowerStationMonitor/QueryPowerStationMonitorForApp"},
                                "POST ", "POST "));
    EXPECT_THAT(sent(3), testing::EndsWith(R"({"page_size":20,"page_index":1,"powerstation_id":"","orderby":"",)"
                                           R"("powerstation_status":"","key":"","powerstation_type":""})"));
    EXPECT_THAT(sent(4), testing::EndsWith("page_size=20&page_index=1&powerstation_id=&orderby=&powerstation_status="
                                           "&key=&powerstation_type="));
}

TEST_F(StationsEndToEnd, TheSizeIsThatOfThePreferredStation) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    const std::pair<std::optional<QString>, double> rows[] = {
        {u" 6f1c2a34-58be-4d0e-9a57-2b8c41d7e002 "_s, 3.0}, {u"unknown"_s, 8.2}, {std::nullopt, 8.2}};
    for (const auto& [preferred, size] : rows) {
        EXPECT_EQ(await(client->fetchSystemSizeKW(session, preferred)).value(), size);
    }
}

TEST_F(StationsEndToEnd, AnEmptyListEndsTheSearchAtOnceAndHasNoSize) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    disturb(FaultKind::emptyList);
    EXPECT_EQ(errorOf(await(client->discoverDefaultPowerStation(session))), "No power station found for this account.");
    EXPECT_EQ(asked().size(), 1U);
    EXPECT_EQ(await(client->fetchSystemSizeKW(session, stationID)).value(), std::nullopt);
}

} // namespace
} // namespace Varnel
