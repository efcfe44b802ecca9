#include <VarnelSEMS/SEMSPowerSeries.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(SEMSSeriesIndex, ReadsTimesAndIndexes) {
    const auto order = [](const char* text) {
        const auto index = parsedSeriesIndex(QLatin1String(text));
        return index ? std::optional(index->order) : std::nullopt;
    };
    EXPECT_EQ(order("12:05"), 12 * 3600 + 300);
    EXPECT_EQ(order(" 7 "), 7);
    EXPECT_EQ(order("t_0935"), 935);
    EXPECT_LT(order("12/31/2024 23:59:00"), order("01/01/2025 00:00:00"));
    EXPECT_LT(order("06/ 9/2025  9:05:59"), order("06/09/2025 09:06:00"));
    EXPECT_LT(order("2025-06-21T12:05"), order("2025-06-22T00:00"));
    for (const char* text : {"", "pac", "vpv1", "25:00", "12:60", "2025-06-21", "-1", "1.5", "999999999999999999999"}) {
        EXPECT_EQ(order(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace Varnel
