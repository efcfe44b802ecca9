#include <simulator/SunCurve.h>

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

TEST(SunCurve, DrawsStandbyAtNightAndStaysBelowTheCapacityByDay) {
    constexpr double capacityKW = 8;
    EXPECT_LT(SunCurve::powerKW(capacityKW, QTime(5, 59)), 0);
    EXPECT_LT(SunCurve::powerKW(capacityKW, QTime(20, 1)), 0);
    EXPECT_GT(SunCurve::powerKW(capacityKW, QTime(13, 0)), capacityKW / 2);
    EXPECT_LT(SunCurve::powerKW(capacityKW, QTime(13, 0)), capacityKW);
}

TEST(SunCurve, EnergyGrowsByDayAlone) {
    EXPECT_EQ(SunCurve::energyKWh(8, QTime(5, 0)), 0);
    EXPECT_LT(SunCurve::energyKWh(8, QTime(9, 0)), SunCurve::energyKWh(8, QTime(15, 0)));
    EXPECT_EQ(SunCurve::energyKWh(8, QTime(21, 0)), SunCurve::energyKWh(8, QTime(23, 0)));
}

} // namespace
} // namespace Varnel::Simulator
