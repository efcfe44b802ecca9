#include <simulator/Settings.h>

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

const QDateTime morning(QDate(2026, 6, 1), QTime(8, 0));

TEST(Settings, ApplyWhatTheyName) {
    const auto change = changed(standardBehaviour(),
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

TEST(Settings, AWrongOneIsNamed) {
    const std::pair<const char*, JSON> rows[] = {
        {"nope", {{"nope", 1}}},
        {"powerKW", {{"powerKW", "much"}}},
        {"stations", {{"stations", 99}}},
        {"time", {{"time", "25:00"}}},
        {"families", {{"families", "none"}}},
        {"nesting", {{"nesting", 1000}}},
        {"fault", {{"fault", {{"path", "*"}}}}},
        {"fault: count", {{"fault", {{"kind", "cut"}, {"count", -1}}}}},
        {"object", JSON::array()},
    };
    for (const auto& [name, settings] : rows) {
        SCOPED_TRACE(name);
        const auto change = changed(standardBehaviour(), settings, morning);
        ASSERT_FALSE(change);
        EXPECT_TRUE(change.error().localizedDescription().contains(QString::fromUtf8(name)));
    }
}

} // namespace
} // namespace Varnel::Simulator
