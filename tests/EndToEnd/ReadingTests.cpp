#include "EndToEndTest.h"

#include <simulator/Station.h>

namespace Varnel {
namespace {

class ReadingEndToEnd : public EndToEndTest {};

TEST_F(ReadingEndToEnd, WithoutAPreferenceTheFirstStationIsRead) {
    const SEMSSession session = signedIn(SEMSAuthMode::openAPI);
    simulator.behaviour().todayOutputKWh = 12.3;
    for (const std::optional<QString>& none : {std::optional<QString>(), std::optional(QStringLiteral(" "))}) {
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

TEST_F(ReadingEndToEnd, AWholeDayReadsAsItWasProduced) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    const struct {
        int inverters;
        double capacityKW;
        double nightWatts;
        bool powerTexts;
    } rows[] = {{1, 8.2, 0, true}, {2, 8.2, -8, true}, {3, 60, -25, true}, {1, 8.2, -8, false}, {3, 60, 0, false}};
    using namespace Simulator::SunCurve;
    const int minutes[] = {
        0,   sunriseMinute,     sunriseMinute + 1, sunriseMinute + 2, sunriseMinute + 4, sunriseMinute + 8,
        720, sunsetMinute - 16, sunsetMinute - 3,  sunsetMinute - 1,  sunsetMinute,      1439};
    for (const auto& row : rows) {
        Simulator::SimulatedStation& station = simulator.behaviour().stations.front();
        station.inverters = row.inverters;
        station.capacityKW = row.capacityKW;
        simulator.behaviour().nightWatts = row.nightWatts;
        simulator.behaviour().shape.powerTexts = row.powerTexts;
        for (const int minute : minutes) {
            const QTime timeOfDay = QTime(0, 0).addSecs(minute * 60);
            time.jumpTo(Timestamp::fromDateTime(QDateTime(QDate(2026, 6, 1), timeOfDay)));
            const double sunKW = powerKW(row.capacityKW, timeOfDay);
            SCOPED_TRACE(testing::Message()
                         << row.inverters << (row.powerTexts ? " with texts at " : " at ") << minute);
            const PowerReading read = reading(session).value();
            EXPECT_NEAR(read.kilowatts, sunKW > 0 ? sunKW : row.nightWatts / 1000, 0.0005);
            EXPECT_NEAR(read.todayOutputKWh.value_or(-1), energyKWh(row.capacityKW, timeOfDay), 0.1);
        }
    }
}

TEST_F(ReadingEndToEnd, TheSearchForTheDayEndsWithAnAnswerWithTheConnectionAndAfterThirtySeconds) {
    const SEMSSession session = signedIn(SEMSAuthMode::legacyPortal);
    simulator.behaviour().shape.detailTellsEnergy = false;
    simulator.behaviour().todayOutputKWh = 12.3;
    EXPECT_EQ(reading(session).value().todayOutputKWh, 12.3);
    EXPECT_EQ(asked().size(), 2U);
    EXPECT_TRUE(simulator.log().requests().back().body.contains(R"("count":1,"date":"2026-06-01")"));

    disturb(FaultKind::cut, QStringLiteral("*ByDay*"));
    EXPECT_EQ(reading(session).value().todayOutputKWh, std::nullopt);
    EXPECT_EQ(asked().size(), 4U);

    simulator.behaviour().faults.clear();
    answer(QStringLiteral("*ByDay*"), 500);
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
        const SEMSDaySeries curve = series().value().value();
        ASSERT_EQ(curve.kilowatts.size(), samplesUntilNoon) << qPrintable(rawValue(form));
        EXPECT_NEAR(curve.kilowatts.back(), Simulator::SunCurve::powerKW(8.2, QTime(12, 0)), 0.001);
        EXPECT_EQ(curve.kilowatts.front(), 0);
        ASSERT_EQ(curve.minutesOfDay.size(), samplesUntilNoon);
        EXPECT_EQ(curve.minutesOfDay.back(), 12 * 60);
    }
    simulator.log().clear();
    simulator.behaviour().shape.dayForm = Simulator::DayForm::totals;
    answer(QStringLiteral("*v3*"), 200, QStringLiteral(R"({"data":{"pacs":[{"pac":0},{"pac":1500}]}})"));
    EXPECT_EQ(series().value(), (SEMSDaySeries{{0, 1.5}, {}}));
    EXPECT_EQ(asked().size(), 3U);

    simulator.behaviour().faults.clear();
    EXPECT_EQ(series().value(), std::nullopt);
    answer(QStringLiteral("*"), 500);
    EXPECT_EQ(errorOf(series()), "SEMS API returned HTTP 500.");
}

} // namespace
} // namespace Varnel
