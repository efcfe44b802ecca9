#include <Varnel/Linux/SingleInstance.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(SingleInstance, TheCallThatStartsTheProgramAsksForNothingMore) {
    SingleInstance instance(QStringLiteral("com.example.single"));
    int shown = 0;
    instance.Activate({});
    instance.setActivationHandler([&] { ++shown; });
    EXPECT_EQ(shown, 0);
    instance.Activate({});
    EXPECT_EQ(shown, 1);
}

} // namespace
} // namespace Varnel
