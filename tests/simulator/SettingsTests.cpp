#include <simulator/Behaviour.h>

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

const QDateTime morning(QDate(2026, 6, 1), QTime(8, 0));

TEST(Settings, ApplyWhatTheyName) {
    const auto change = changed(Behaviour(),
                                {{"powerKW", {1.5, -0.01}},
                                 {"stations", 3},
                                 {"time", "12:30"},
                                 {"families", "portal"},
                                 {"fault", {{"kind", "cut"}, {"path", "*Detail*"}, {"count", 2}}},
                                 {"expireSessions", true}},
                                morning);
    ASSERT_TRUE(change) << qPrintable(change.error().localizedDescription());
    EXPECT_EQ(change->behaviour.powerScript, (std::deque<double>{1.5, -0.01}));
    EXPECT_EQ(change->behaviour.stations.size(), 3U);
    EXPECT_EQ(change->behaviour.timeOffset, Seconds(4.5 * 3600));
    EXPECT_EQ(change->behaviour.families, ServedFamilies::portal);
    ASSERT_EQ(change->behaviour.faults.size(), 1U);
    EXPECT_EQ(change->behaviour.faults[0].kind, FaultKind::cut);
    EXPECT_EQ(change->behaviour.faults[0].count, 2);
    EXPECT_TRUE(change->expireSessions);
}

TEST(Settings, AStationsMembersMayBeLeftOut) {
    const JSON settings = {{"stations", {{{"inverters", 2}, {"capacityKW", 60}}, {{"name", "Barn"}}}}};
    const auto stations = changed(Behaviour(), settings, morning).value().behaviour.stations;
    std::vector<SimulatedStation> expected = builtInStations(2);
    expected[0].inverters = 2;
    expected[0].capacityKW = 60;
    expected[1].name = QStringLiteral("Barn");
    EXPECT_EQ(stations, expected);
}

TEST(Settings, ThoseOfABehaviourMakeItOutOfAnyOther) {
    Behaviour behaviour;
    behaviour.families = ServedFamilies::token;
    behaviour.stations = builtInStations(1);
    behaviour.powerScript = {0, 1.5};
    behaviour.timeOffset = Seconds(-7200);
    behaviour.shape = {.units = UnitStyle::kilowatts, .nesting = 3, .detailTellsEnergy = false};
    behaviour.faults.emplace_back().from = QTime(22, 0);
    behaviour.faults.back().delay = std::chrono::milliseconds(250);
    EXPECT_EQ(changed(Behaviour(), settingsOf(behaviour), morning).value().behaviour, behaviour);
    behaviour.sessionLifetime = Seconds(2400);
    behaviour.stations.front().inverters = 3;
    behaviour.todayOutputKWh = 5;
    EXPECT_EQ(changed(behaviour, settingsOf(Behaviour()), morning).value().behaviour, Behaviour());
}

TEST(Settings, AWrongOneIsNamed) {
    const std::pair<const char*, JSON> rows[] = {
        {"nope", {{"nope", 1}}},
        {"powerKW", {{"powerKW", "much"}}},
        {"stations", {{"stations", 99}}},
        {"time", {{"time", "25:00"}}},
        {"families", {{"families", "none"}}},
        {"inverters", {{"stations", {{{"inverters", 0}}}}}},
        {"nesting", {{"nesting", 1000}}},
        {"fault", {{"fault", "cut"}}},
        {"fault: to", {{"fault", {{"kind", "refuse"}, {"from", "22:00"}, {"to", "24:00"}}}}},
        {"from and to", {{"fault", {{"kind", "refuse"}, {"from", "22:00"}}}}},
        {"fault: count", {{"fault", {{"kind", "cut"}, {"count", -1}}}}},
        {"object", JSON::array()},
    };
    for (const auto& [name, settings] : rows) {
        SCOPED_TRACE(name);
        const auto change = changed(Behaviour(), settings, morning);
        ASSERT_FALSE(change);
        EXPECT_TRUE(change.error().localizedDescription().contains(QString::fromUtf8(name)));
    }
}

} // namespace
} // namespace Varnel::Simulator
