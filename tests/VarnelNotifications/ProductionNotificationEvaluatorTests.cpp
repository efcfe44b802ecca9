#include <VarnelNotifications/ProductionNotificationEvaluator.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace Varnel {
namespace {

/// One character per event, one word per reading; "-" for a reading without events.
std::string eventsOf(ProductionNotificationEvaluator& evaluator, const std::vector<double>& readings) {
    std::string text;
    for (const double reading : readings) {
        text += text.empty() ? "" : " ";
        const std::vector<ProductionNotificationEvent> events = evaluator.evaluate(reading);
        for (const ProductionNotificationEvent event : events) {
            text += "SER"[static_cast<int>(event)];
        }
        text += events.empty() ? "-" : "";
    }
    return text;
}

TEST(ProductionNotificationEvaluator, SequencesOfReadingsGiveTheirEvents) {
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* name;
        std::vector<double> readings;
        const char* events;
        int tolerated = 1;
        double threshold = 1.0;
    } rows[] = {
        {"a day", {0, 0.5, 1.2, 3, 0.2, 1.5, -0.1, -0.1, -0.1}, "- S R - - - - E -"},
        {"start above the threshold", {0, 1.5}, "- SR"},
        {"the threshold itself is not above it", {0, 1.0, std::nextafter(1.0, 2.0)}, "- S R"},
        {"the smallest power is a start", {0, std::numeric_limits<double>::denorm_min()}, "- S"},
        {"adopted above the threshold", {2, 3, 0.5, 3}, "- - - -"},
        {"adopted below the threshold", {0.5, 1.5, 2}, "- R -"},
        {"a negative run broken by zero", {0, 1, -0.1, 0, -0.1, -0.0, -0.1, -0.1}, "- S - - - - - E"},
        {"zeros never end production", {1, 0, 0, 0, 0}, "- - - - -"},
        {"idle below zero", {-1, 0, -0.0, -1, -1}, "- - - - -"},
        {"a new session can rise again", {0, 2, -1, -1, 2}, "- SR - E SR"},
        {"an adopted session that ended", {2, -1, -1, 2}, "- - E SR"},
        {"a short dip does not start anew", {0, 2, -1, 2}, "- SR - -"},
        {"NaN is not positive", {nan, 0.5}, "- S"},
        {"NaN neither counts as negative nor breaks the run", {1, -1, nan, -1, nan}, "- - - E -"},
        {"infinities", {-infinity, infinity, -infinity, -infinity}, "- SR - E"},
        {"no tolerance", {0, 0.5, -0.1}, "- S E", 0},
        {"another threshold and more tolerance", {0, 2, 6, -1, -1, -1, -1}, "- S R - - - E", 3, 5.0},
    };
    for (const auto& row : rows) {
        ProductionNotificationEvaluator evaluator(row.tolerated, row.threshold);
        EXPECT_EQ(eventsOf(evaluator, row.readings), row.events) << row.name;
    }
}

TEST(ProductionNotificationEvaluator, ResetGivesTheStateOfAFreshInstance) {
    ProductionNotificationEvaluator evaluator(1, 1.0);
    EXPECT_EQ(eventsOf(evaluator, {0, 0.5, -1}), "- S -");
    evaluator.reset();
    EXPECT_EQ(eventsOf(evaluator, {0.5, -1, 1.5, -1, -1}), "- - R - E") << "adopted, with a run of its own";
    evaluator.reset();
    EXPECT_EQ(eventsOf(evaluator, {2}), "-");
}

} // namespace
} // namespace Varnel
