#include "EndToEndTest.h"

#include <simulator/SunCurve.h>

namespace Varnel {
namespace {

using namespace Qt::StringLiterals;

class ReadingEndToEnd : public EndToEndTest {
protected:
    /// The paths of the day after whose failure a reading comes without the day's energy.
    void expectDaySearch(SEMSAuthMode mode, const Lines& paths) {
        const std::string id = stationID.toStdString();
        const SEMSSession session = signedIn(mode);
        EXPECT_EQ(reading(session).value().todayOutputKWh, std::nullopt);
        Lines expected = inPasses(paths, "POST ", "GET ",
                                  "?powerstation_id=" + id + "&powerStationId=" + id + "&id=" + id +
                                      "&date=2026-06-01&day=2026-06-01&queryDate=2026-06-01&start=2026-06-01"
                                      "&end=2026-06-01&count=1");
        expected.insert(expected.begin(), asked().at(0));
        EXPECT_EQ(asked(), expected);
        EXPECT_THAT(sent(1), testing::EndsWith(R"({"powerstation_id":")" + id + R"(","powerStationId":")" + id +
                                               R"(","id":")" + id + R"(","count":1,"date":"2026-06-01",)" +
                                               R"("day":"2026-06-01","queryDate":"2026-06-01",)" +
                                               R"("start":"2026-06-01","end":"2026-06-01"})"));
    }
};

TEST_F(ReadingEndToEnd, FourTokenPathsAreTriedInOrder) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    answer(u"*"_s, 404);
    EXPECT_EQ(errorOf(reading(session, u" a&é "_s)), "SEMS API returned HTTP 404.");
    EXPECT_THAT(asked(), testing::ElementsAre("GET /api/api/v1/OpenApi/GetPowerStationMonitorDetail/a&%C3%A9",
                                              "GET /api/api/OpenApi/GetPowerStationMonitorDetail/a&%C3%A9",
                                              "GET /api/api/v1/OpenApi/GetPowerStationMonitorDetail?id=a%26%C3%A9",
                                              "GET /api/api/OpenApi/GetPowerStationMonitorDetail?id=a%26%C3%A9"));
    const std::string token = session.token.toStdString();
    EXPECT_EQ(sent(3), "Accept: application/json\nToken: " + token + "\nAuthorization: Bearer " + token + '\n');
}

TEST_F(ReadingEndToEnd, ThreePortalPathsAreTriedInJSONAndThenTheFirstInAForm) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    answer(u"*"_s, 404, {}, u"json"_s);
    answer(u"*"_s, 401);
    EXPECT_EQ(errorOf(reading(session, u"s/1"_s)),
              "Authentication failed. Check account/password and endpoint region.");
    EXPECT_THAT(asked(), testing::ElementsAre("POST /api/v2/PowerStation/GetMonitorDetailByPowerstationId",
                                              "POST /api/v1/PowerStation/GetMonitorDetailByPowerstationId",
                                              "POST /api/PowerStation/GetMonitorDetailByPowerstationId",
                                              "POST /api/v2/PowerStation/GetMonitorDetailByPowerstationId"));
    const std::string headers = "\nToken: " + session.legacyTokenHeader->toStdString() +
                                "\nUser-Agent: PVMaster/2.0.4 (iPhone; iOS 11.4.1; Scale/2.00)\n";
    EXPECT_EQ(sent(0),
              "Accept: application/json\nContent-Type: application/json" + headers + R"({"powerStationId":"s/1"})");
    EXPECT_EQ(sent(3), "Accept: application/json\nContent-Type: application/x-www-form-urlencoded" + headers +
                           "powerStationId=s%2F1");
}

TEST_F(ReadingEndToEnd, WithoutAPreferenceTheFirstStationIsRead) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    simulator.behaviour().todayOutputKWh = 12.3;
    for (const std::optional<QString>& none : {std::optional<QString>(), std::optional(u" "_s)}) {
        const PowerReading read = await(client->fetchCurrentPower(session, none)).value();
        EXPECT_EQ(read, (PowerReading{read.kilowatts, 12.3, stationID, time.now()}));
        EXPECT_NEAR(read.kilowatts, Simulator::SunCurve::powerKW(8.2, QTime(12, 0)), 0.001);
    }
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
                EXPECT_DOUBLE_EQ(read.value().kilowatts, 3.42);
                EXPECT_DOUBLE_EQ(read.value().todayOutputKWh.value_or(-1), 12.3);
            }
        }
    }
}

TEST_F(ReadingEndToEnd, EveryDayPathOfTheFamilyIsTriedInBothFormsAndNoneHoldsBackTheReading) {
    simulator.behaviour().shape.detailTellsEnergy = false;
    answer(u"*ByDay*"_s, 500);
    expectDaySearch(SEMSAuthMode::openAPI,
                    {"/api/api/OpenApi/GetPowerStationPowerAndIncomeByDay",
                     "/api/api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay",
                     "/api/OpenApi/GetPowerStationPowerAndIncomeByDay",
                     "/api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay", "/api/api/OpenApi/GetPowerStationPowerByDay",
                     "/api/api/v1/OpenApi/GetPowerStationPowerByDay", "/api/OpenApi/GetPowerStationPowerByDay",
                     "/api/v1/OpenApi/GetPowerStationPowerByDay"});
    expectDaySearch(SEMSAuthMode::legacyPortal,
                    {"/api/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
                     "/api/PowerStation/GetPowerStationPowerAndIncomeByDay",
                     "/api/v3/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
                     "/api/v2/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
                     "/api/v1/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay",
                     "/api/v1/PowerStation/GetPowerStationPowerAndIncomeByDay",
                     "/api/PowerStationMonitor/GetPowerStationPowerByDay",
                     "/api/v2/PowerStationMonitor/GetPowerStationPowerByDay",
                     "/api/v1/PowerStationMonitor/GetPowerStationPowerByDay",
                     "/api/PowerStation/GetPowerStationPowerByDay", "/api/v1/PowerStation/GetPowerStationPowerByDay"});
}

TEST_F(ReadingEndToEnd, TheSearchForTheDayEndsWithAnAnswerWithTheConnectionAndAfterThirtySeconds) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    simulator.behaviour().shape.detailTellsEnergy = false;
    simulator.behaviour().todayOutputKWh = 12.3;
    EXPECT_EQ(reading(session).value().todayOutputKWh, 12.3);
    EXPECT_EQ(asked().size(), 2U);

    disturb(FaultKind::cut, u"*ByDay*"_s);
    EXPECT_EQ(reading(session).value().todayOutputKWh, std::nullopt);
    EXPECT_EQ(asked().size(), 4U);

    simulator.behaviour().faults.clear();
    answer(u"*ByDay*"_s, 500);
    http.onSend = [this] { time.jumpTo(time.now() + Seconds(11)); };
    EXPECT_EQ(reading(session).value().todayOutputKWh, std::nullopt);
    EXPECT_EQ(asked().size(), 8U);
    EXPECT_EQ(http.timeouts.back(), std::chrono::seconds(8));
}

TEST_F(ReadingEndToEnd, TheSeriesIsTheFirstCurveThatADayEndpointHolds) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    const auto series = [&] { return await(client->fetchTodayOutputSeries(session, stationID)); };
    constexpr std::size_t samplesUntilNoon = 12 * 12 + 1;
    for (const auto form : {Simulator::DayForm::samples, Simulator::DayForm::lines}) {
        simulator.behaviour().shape.dayForm = form;
        const std::vector<double> curve = series().value().value();
        ASSERT_EQ(curve.size(), samplesUntilNoon) << qPrintable(rawValue(form));
        EXPECT_NEAR(curve.back(), Simulator::SunCurve::powerKW(8.2, QTime(12, 0)), 0.001);
        EXPECT_EQ(curve.front(), 0);
    }
    simulator.log().clear();
    simulator.behaviour().shape.dayForm = Simulator::DayForm::totals;
    answer(u"*v3*"_s, 200, uR"({"data":{"pacs":[{"pac":0},{"pac":1500}]}})"_s);
    EXPECT_EQ(series().value(), (std::vector<double>{0, 1.5}));
    EXPECT_EQ(asked().size(), 3U);
    EXPECT_THAT(sent(0), testing::HasSubstr(R"("count":288)"));

    simulator.behaviour().faults.clear();
    EXPECT_EQ(series().value(), std::nullopt);
    answer(u"*"_s, 500);
    EXPECT_EQ(errorOf(series()), "SEMS API returned HTTP 500.");
}

} // namespace
} // namespace Varnel
