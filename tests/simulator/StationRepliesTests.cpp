#include <simulator/SEMSService.h>

#include "../Support/HandTurnedTime.h"

#include <gmock/gmock.h>

namespace Varnel::Simulator {
namespace {

/// The monitor detail of the first station as the service has it in its replies.
class MonitorDetailTest : public testing::Test {
protected:
    void SetUp() override {
        const Reply reply = asked("v1/OpenApi/GetToken", {}, R"({"account":"demo@example.com","pwd":"sunshine"})");
        token = QByteArray::fromStdString(parseJSON(reply.body).value().at("data").at("token"));
    }

    JSON detail() {
        const QByteArray id = service.behaviour().stations.front().id.toUtf8();
        return parseJSON(asked("OpenApi/GetPowerStationMonitorDetail?id=" + id, token).body).value().at("data");
    }

    Reply asked(const QByteArray& path, const QByteArray& session, const QByteArray& body = {}) {
        return service.answer(
            {body.isEmpty() ? "GET" : "POST",
             "/api/" + path,
             {{"Content-Type", "application/json"}, {"Token", session}, {"Authorization", "Bearer " + session}},
             body,
             {},
             0});
    }

    Testing::HandTurnedTime time{QDateTime(QDate(2026, 6, 1), QTime(0, 0))};
    SEMSService service{time};
    QByteArray token;
};

double sumOver(const JSON& inverters, const char* member) {
    double sum = 0;
    for (const JSON& inverter : inverters) {
        sum += inverter.at(member).get<double>();
    }
    return sum;
}

TEST_F(MonitorDetailTest, TellsAWholeDayInWattsOfTheStationAndOfEachInverter) {
    const struct {
        int inverters;
        double capacityKW;
        int wattDecimals;
        double nightWatts;
    } rows[] = {{1, 8.2, 0, 0}, {2, 8.2, 1, -8}, {3, 60, 0, -25}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.inverters);
        SimulatedStation& station = service.behaviour().stations.front();
        station.inverters = row.inverters;
        station.capacityKW = row.capacityKW;
        service.behaviour().wattDecimals = row.wattDecimals;
        service.behaviour().nightWatts = row.nightWatts;
        double before = 0;
        double highest = 0;
        time.jumpTo(Timestamp::fromDateTime(QDateTime(QDate(2026, 6, 1), QTime(0, 0))));
        for (int minute = 0; minute < 24 * 60; minute += 15) {
            SCOPED_TRACE(qPrintable(service.now().toString()));
            const JSON data = detail();
            const double watts = data["kpi"]["pac"].get<double>();
            const double sunKW = SunCurve::powerKW(row.capacityKW, service.now().time());
            ASSERT_NEAR(watts, sunKW > 0 ? sunKW * 1000 : row.nightWatts, row.wattDecimals == 0 ? 0.5 : 0.05);
            ASSERT_EQ(data["inverter"].size(), row.inverters);
            ASSERT_NEAR(sumOver(data["inverter"], "out_pac"), watts, 1e-6);
            ASSERT_NEAR(sumOver(data["inverter"], "eday"), data["kpi"]["power"].get<double>(), 1e-6);
            ASSERT_GE(data["kpi"]["power"], before) << "what was made today does not shrink";
            before = data["kpi"]["power"].get<double>();
            highest = std::max(highest, watts);
            time.advance(Seconds(900));
        }
        EXPECT_EQ(service.now(), QDateTime(QDate(2026, 6, 2), QTime(0, 0)));
        EXPECT_GT(highest, row.capacityKW * 700);
        EXPECT_EQ(detail()["kpi"]["power"], 0);
    }
}

TEST_F(MonitorDetailTest, HasTheServicesOwnMembersBesideEachOther) {
    service.behaviour().stations.front().inverters = 2;
    service.behaviour().powerScript = {0.0554};
    service.behaviour().todayOutputKWh = 16;
    JSON data = detail();
    EXPECT_EQ(data["info"]["capacity"], 8.2);
    EXPECT_EQ(data["info"]["time"], "06/01/2026 00:00:00");
    EXPECT_EQ(data["info"]["time_span"], -2);
    EXPECT_EQ(data["kpi"]["pac"], 55);
    EXPECT_EQ(data["powerflow"]["pv"], "55(W)");
    const JSON& first = data["inverter"][0];
    EXPECT_EQ(first["output_power"], "22W");
    EXPECT_EQ(first["d"]["output_power"], "22W");
    EXPECT_EQ(first["d"]["pac"], 22);
    EXPECT_EQ(first["d"]["capacity"], "3.3kW");
    EXPECT_EQ(first["invert_full"]["outputpower"], 22);
    EXPECT_EQ(first["eday"], 6.4);
    EXPECT_EQ(data["equipment"][1]["powerGeneration"], "Power: 0.033kW");

    service.behaviour().shape.powerTexts = false;
    data = detail();
    EXPECT_FALSE(data["inverter"][0].contains("output_power"));
    EXPECT_FALSE(data["inverter"][0]["d"].contains("output_power"));
    EXPECT_EQ(data["inverter"][0]["d"]["pac"], 22);
}

} // namespace
} // namespace Varnel::Simulator
