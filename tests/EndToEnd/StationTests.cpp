#include "EndToEndTest.h"

namespace Varnel {
namespace {

using testing::ElementsAre;

class StationsEndToEnd : public EndToEndTest {
protected:
    Result<std::vector<PowerStation>> stations(SEMSAuthMode mode) {
        const SEMSSession session = signedIn(mode);
        return Testing::await(client->fetchPowerStations(session));
    }
};

TEST_F(StationsEndToEnd, TheTokenAPIIsAskedByPOSTThenByGET) {
    breakPaths(QStringLiteral("*PowerStation*"));
    ASSERT_FALSE(stations(SEMSAuthMode::openAPI));
    EXPECT_THAT(
        asked(),
        ElementsAre("POST /api/api/v1/OpenApi/GetUserPowerStation", "POST /api/api/OpenApi/GetUserPowerStation",
                    "POST /api/api/v1/OpenApi/GetPowerStationByUser", "POST /api/api/OpenApi/GetPowerStationByUser",
                    "GET /api/api/v1/OpenApi/GetUserPowerStation", "GET /api/api/OpenApi/GetUserPowerStation",
                    "GET /api/api/v1/OpenApi/GetPowerStationByUser", "GET /api/api/OpenApi/GetPowerStationByUser"));
    EXPECT_EQ(request(0).body, R"({"searchType":0,"page_index":1,"page_size":50})");
    EXPECT_EQ(request(4).body, "");
    EXPECT_EQ(request(4).header("Authorization"), "Bearer " + request(4).header("Token"));
}

TEST_F(StationsEndToEnd, ThePortalIsAskedInJSONThenInAForm) {
    breakPaths(QStringLiteral("*QueryPowerStationMonitor*"));
    ASSERT_FALSE(stations(SEMSAuthMode::legacyPortal));
    const std::vector<std::string> pass = {"POST /api/v3/PowerStationQuery/QueryPowerStationMonitor",
                                           "POST /api/PowerStationMonitor/QueryPowerStationMonitorForApp",
                                           "POST /api/v2/PowerStationMonitor/QueryPowerStationMonitorForApp",
                                           "POST /api/v1/PowerStationMonitor/QueryPowerStationMonitorForApp"};
    std::vector<std::string> both = pass;
    both.insert(both.end(), pass.begin(), pass.end());
    EXPECT_EQ(asked(), both);
    EXPECT_EQ(request(3).body, R"({"page_size":20,"page_index":1,"powerstation_id":"","orderby":"",)"
                               R"("powerstation_status":"","key":"","powerstation_type":""})");
    EXPECT_EQ(request(4).body,
              "page_size=20&page_index=1&powerstation_id=&orderby=&powerstation_status=&key=&powerstation_type=");
    EXPECT_EQ(request(4).header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(StationsEndToEnd, TheFirstReplyWithStationsIsTaken) {
    const auto& rows = allCases<Simulator::KeyStyle>();
    for (const SEMSAuthMode mode : {SEMSAuthMode::openAPI, SEMSAuthMode::legacyPortal}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.rawValue);
            simulator.behaviour().shape.keys = row.value;
            const auto found = stations(mode);
            ASSERT_TRUE(found);
            const std::vector<PowerStation> expected = {
                {QString::fromLatin1(stationID), QStringLiteral("Sunny Roof"), 8.2},
                {QStringLiteral("6f1c2a34-58be-4d0e-9a57-2b8c41d7e002"), QStringLiteral("Garden Shed"), 3.0}};
            EXPECT_EQ(*found, expected);
            EXPECT_EQ(asked().size(), 1U);
        }
    }
}

TEST_F(StationsEndToEnd, ThePortalsFormIsAnsweredWhereItsJSONIsNot) {
    breakPaths(QStringLiteral("*QueryPowerStationMonitor*"), QStringLiteral("json"));
    EXPECT_TRUE(stations(SEMSAuthMode::legacyPortal));
    EXPECT_EQ(asked().size(), 5U);
}

TEST_F(StationsEndToEnd, AnEmptyListEndsTheSearchAtOnce) {
    Fault empty;
    empty.kind = FaultKind::emptyList;
    empty.path = QStringLiteral("*PowerStation*");
    simulator.behaviour().faults = {empty};
    const auto found = stations(SEMSAuthMode::openAPI);
    ASSERT_FALSE(found);
    EXPECT_EQ(*semsError(found.error()), SEMSAPIError::noPowerStation());
    EXPECT_EQ(asked().size(), 1U);
}

TEST_F(StationsEndToEnd, TheSizeIsThatOfThePreferredStation) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    const auto size = [&](const char* id) {
        return Testing::await(client->fetchSystemSizeKW(session, QString::fromLatin1(id))).value_or(std::nullopt);
    };
    EXPECT_EQ(size(" 6f1c2a34-58be-4d0e-9a57-2b8c41d7e002 "), 3.0);
    EXPECT_EQ(size("unknown"), 8.2);
}

} // namespace
} // namespace Varnel
