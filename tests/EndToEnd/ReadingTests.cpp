#include "EndToEndTest.h"

#include <simulator/SunCurve.h>

namespace Varnel {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class ReadingEndToEnd : public EndToEndTest {
protected:
    static std::string withStation(const std::string& text) { return text + stationID; }
};

TEST_F(ReadingEndToEnd, FourTokenPathsAreTriedInOrder) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    breakPaths(QStringLiteral("*MonitorDetail/*"));
    breakPaths(QStringLiteral("*v1/*MonitorDetail*"));
    ASSERT_TRUE(reading(session));
    EXPECT_THAT(asked(), ElementsAre(withStation("GET /api/api/v1/OpenApi/GetPowerStationMonitorDetail/"),
                                     withStation("GET /api/api/OpenApi/GetPowerStationMonitorDetail/"),
                                     withStation("GET /api/api/v1/OpenApi/GetPowerStationMonitorDetail?id="),
                                     withStation("GET /api/api/OpenApi/GetPowerStationMonitorDetail?id=")));
    EXPECT_EQ(request(3).header("Token"), session.token.toUtf8());
    EXPECT_EQ(request(3).header("Authorization"), "Bearer " + session.token.toUtf8());
    EXPECT_EQ(request(3).body, "");
}

TEST_F(ReadingEndToEnd, ThreePortalPathsAreTriedInJSONAndThenTheFirstInAForm) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    breakPaths(QStringLiteral("*MonitorDetail*"), QStringLiteral("json"));
    ASSERT_TRUE(reading(session));
    EXPECT_THAT(asked(), ElementsAre("POST /api/v2/PowerStation/GetMonitorDetailByPowerstationId",
                                     "POST /api/v1/PowerStation/GetMonitorDetailByPowerstationId",
                                     "POST /api/PowerStation/GetMonitorDetailByPowerstationId",
                                     "POST /api/v2/PowerStation/GetMonitorDetailByPowerstationId"));
    EXPECT_EQ(request(0).body.toStdString(), R"({"powerStationId":")"s + stationID + R"("})");
    EXPECT_EQ(request(3).body.toStdString(), "powerStationId="s + stationID);
    for (std::size_t i : {0U, 3U}) {
        EXPECT_EQ(request(i).header("Accept"), "application/json");
        EXPECT_EQ(request(i).header("User-Agent"), "PVMaster/2.0.4 (iPhone; iOS 11.4.1; Scale/2.00)");
        EXPECT_EQ(request(i).header("Token"), session.legacyTokenHeader->toUtf8());
    }
}

TEST_F(ReadingEndToEnd, WithoutAPreferenceTheFirstStationIsRead) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    const auto read = Testing::await(client->fetchCurrentPower(session, std::nullopt));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->stationID, QString::fromLatin1(stationID));
    EXPECT_EQ(read->capturedAt, time.now());
    EXPECT_NEAR(read->kilowatts, Simulator::SunCurve::powerKW(8.2, QTime(12, 0)), 0.001);
}

TEST_F(ReadingEndToEnd, EveryShapeOfADetailReadsTheSame) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    Simulator::Behaviour& behaviour = simulator.behaviour();
    behaviour.powerScript = {3.42};
    behaviour.todayOutputKWh = 12.3;
    for (const auto& units : allCases<Simulator::UnitStyle>()) {
        for (const auto& keys : allCases<Simulator::KeyStyle>()) {
            for (const auto& size : allCases<Simulator::DetailSize>()) {
                SCOPED_TRACE(testing::Message() << units.rawValue << ' ' << keys.rawValue << ' ' << size.rawValue);
                behaviour.shape = {.units = units.value, .keys = keys.value, .detailSize = size.value, .nesting = 3};
                const auto read = reading(session);
                ASSERT_TRUE(read) << qPrintable(read.error().localizedDescription());
                EXPECT_DOUBLE_EQ(read->kilowatts, 3.42);
                EXPECT_DOUBLE_EQ(read->todayOutputKWh.value_or(-1), 12.3);
            }
        }
    }
}

TEST_F(ReadingEndToEnd, StandbyAfterSunsetStaysNegative) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    time.jumpTo(time.now() + std::chrono::hours(10));
    EXPECT_DOUBLE_EQ(reading(session)->kilowatts, Simulator::SunCurve::standbyKW);
}

TEST_F(ReadingEndToEnd, TheDayIsAskedWhenTheDetailDoesNotTellIt) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    simulator.behaviour().shape.detailTellsEnergy = false;
    simulator.behaviour().todayOutputKWh = 12.3;
    EXPECT_DOUBLE_EQ(reading(session)->todayOutputKWh.value_or(-1), 12.3);
    EXPECT_THAT(asked(), ElementsAre("POST /api/v2/PowerStation/GetMonitorDetailByPowerstationId",
                                     "POST /api/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"));
    const QByteArray id = stationID;
    EXPECT_EQ(request(1).body, R"({"powerstation_id":")" + id + R"(","powerStationId":")" + id + R"(","id":")" + id +
                                   R"(","count":1,"date":"2026-06-01","day":"2026-06-01",)"
                                   R"("queryDate":"2026-06-01","start":"2026-06-01","end":"2026-06-01"})");
}

TEST_F(ReadingEndToEnd, EveryDayPathOfTheFamilyIsTriedInBothFormsAndNoneHoldsBackTheReading) {
    const std::string query = "?powerstation_id="s + stationID + "&powerStationId=" + stationID + "&id=" + stationID +
                              "&date=2026-06-01&day=2026-06-01&queryDate=2026-06-01&start=2026-06-01"
                              "&end=2026-06-01&count=1";
    const std::pair<SEMSAuthMode, std::vector<std::string>> rows[] = {
        {SEMSAuthMode::openAPI,
         {"/api/api/OpenApi/GetPowerStationPowerAndIncomeByDay",
          "/api/api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay", "/api/OpenApi/GetPowerStationPowerAndIncomeByDay",
          "/api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay", "/api/api/OpenApi/GetPowerStationPowerByDay",
          "/api/api/v1/OpenApi/GetPowerStationPowerByDay", "/api/OpenApi/GetPowerStationPowerByDay",
          "/api/v1/OpenApi/GetPowerStationPowerByDay"}},
        {SEMSAuthMode::legacyPortal,
         {"/api/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
          "/api/PowerStation/GetPowerStationPowerAndIncomeByDay",
          "/api/v3/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
          "/api/v2/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
          "/api/v1/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
          "/api/v1/PowerStation/GetPowerStationPowerAndIncomeByDay",
          "/api/PowerStationMonitor/GetPowerStationPowerByDay", "/api/v2/PowerStationMonitor/GetPowerStationPowerByDay",
          "/api/v1/PowerStationMonitor/GetPowerStationPowerByDay", "/api/PowerStation/GetPowerStationPowerByDay",
          "/api/v1/PowerStation/GetPowerStationPowerByDay"}}};
    simulator.behaviour().shape.detailTellsEnergy = false;
    breakPaths(QStringLiteral("*ByDay*"));
    for (const auto& [mode, paths] : rows) {
        const SEMSSession session = signedIn(mode);
        const auto read = reading(session);
        ASSERT_TRUE(read);
        EXPECT_FALSE(read->todayOutputKWh);
        std::vector<std::string> expected = {asked().at(0)};
        for (const std::string& path : paths) {
            expected.push_back("POST " + path);
        }
        for (const std::string& path : paths) {
            expected.push_back("GET " + path);
            expected.back() += query;
        }
        EXPECT_EQ(asked(), expected);
    }
}

TEST_F(ReadingEndToEnd, ABrokenConnectionEndsTheSearchForTheDay) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    simulator.behaviour().shape.detailTellsEnergy = false;
    Fault cut;
    cut.kind = FaultKind::cut;
    cut.path = QStringLiteral("*ByDay*");
    simulator.behaviour().faults = {cut};
    EXPECT_TRUE(reading(session));
    EXPECT_EQ(asked().size(), 2U);
}

TEST_F(ReadingEndToEnd, TheSeriesOfTheDayFollowsTheSun) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    constexpr std::size_t samplesUntilNoon = 12 * 12 + 1;
    for (const auto form : {Simulator::DayForm::samples, Simulator::DayForm::lines}) {
        SCOPED_TRACE(qPrintable(rawValue(form)));
        simulator.behaviour().shape.dayForm = form;
        const auto series = Testing::await(client->fetchTodayOutputSeries(session, QString::fromLatin1(stationID)));
        ASSERT_TRUE(series && *series);
        ASSERT_EQ((*series)->size(), samplesUntilNoon);
        EXPECT_NEAR((*series)->back(), Simulator::SunCurve::powerKW(8.2, QTime(12, 0)), 0.001);
        EXPECT_EQ((*series)->front(), 0);
    }
    simulator.behaviour().shape.dayForm = Simulator::DayForm::totals;
    const auto none = Testing::await(client->fetchTodayOutputSeries(session, QString::fromLatin1(stationID)));
    ASSERT_TRUE(none);
    EXPECT_FALSE(*none);
}

TEST_F(ReadingEndToEnd, AnExpiredSessionIsToldApartByStatusAndByEnvelope) {
    for (const SEMSAuthMode mode : {SEMSAuthMode::openAPI, SEMSAuthMode::legacyPortal}) {
        simulator.behaviour().expiry = Simulator::Expiry::status;
        const SEMSSession session = signedIn(mode);
        ASSERT_TRUE(reading(session));
        simulator.expireSessions();
        EXPECT_EQ(*semsError(reading(session).error()), SEMSAPIError::authenticationFailed());
        simulator.behaviour().expiry = Simulator::Expiry::envelope;
        EXPECT_EQ(*semsError(reading(session).error()),
                  SEMSAPIError::api(QStringLiteral("The authorization has expired, please log in again.")));
        EXPECT_TRUE(reading(signedIn(mode)));
    }
}

} // namespace
} // namespace Varnel
