#include "../Support/ProcessFootprint.h"
#include "PollSoak.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

// bench/PollSoak.cpp does the same for longer, and looks at the memory too.
TEST(Soak, FaultyPollsNeitherShowAWrongValueNorLeaveAnythingOpen) {
    Testing::ControllerBench bench;
    bench.launchConnected();
    Testing::PollSoak soak(bench);
    ASSERT_TRUE(soak.run(50)) << qPrintable(soak.problem());
    Testing::settle();
    const Testing::ProcessFootprint before = Testing::processFootprint();
    ASSERT_TRUE(soak.run(150)) << qPrintable(soak.problem());
    Testing::settle();
    const Testing::ProcessFootprint after = Testing::processFootprint();
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_LE(after.threads, before.threads); // those of pools end by themselves
    EXPECT_GT(soak.failedPolls(), 5);
}

} // namespace
} // namespace Varnel
