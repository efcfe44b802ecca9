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
    ASSERT_TRUE(soak.run(100)) << qPrintable(soak.problem());
    const Testing::ProcessFootprint before = Testing::processFootprint();
    ASSERT_TRUE(soak.run(300)) << qPrintable(soak.problem());
    const Testing::ProcessFootprint after = Testing::processFootprint();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_GT(soak.failedPolls(), 10);
}

} // namespace
} // namespace Varnel
