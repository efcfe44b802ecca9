#include <VarnelShared/Task.h>

#include "../Support/EventLoop.h"
#include "../Support/Files.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Varnel {
namespace {

QCoro::Task<void> fail(std::shared_ptr<bool> hasRun) {
    *hasRun = true;
    throw std::runtime_error("broken");
    co_return;
}

TEST(Task, RunsFromTheEventLoopAndLogsAnEscapingExceptionWithItsName) {
    const Testing::RecordedLog log;
    const auto hasRun = std::make_shared<bool>(false);
    startTask("poll", [hasRun] { return fail(hasRun); });
    EXPECT_FALSE(*hasRun);
    EXPECT_EQ(hasRun.use_count(), 2) << "the captures are kept until then";
    Testing::settle();
    EXPECT_TRUE(*hasRun);
    EXPECT_EQ(hasRun.use_count(), 1);
    EXPECT_EQ(log.lines, QStringList{QStringLiteral("Task poll ended with an exception: broken")});
}

} // namespace
} // namespace Varnel
