#include <VarnelShared/Task.h>

#include "../Support/EventLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Varnel {
namespace {

QCoro::Task<void> setFlag(std::shared_ptr<bool> flag) {
    *flag = true;
    co_return;
}

QCoro::Task<void> fail() {
    throw std::runtime_error("broken");
    co_return;
}

TEST(Task, RunsFromTheEventLoopAndKeepsItsCapturesUntilThen) {
    const auto flag = std::make_shared<bool>(false);
    startTask("test", [flag] { return setFlag(flag); });
    EXPECT_FALSE(*flag);
    EXPECT_EQ(flag.use_count(), 2);
    Testing::settle();
    EXPECT_TRUE(*flag);
    EXPECT_EQ(flag.use_count(), 1);
}

TEST(Task, AnEscapingExceptionIsLoggedWithTheNameOfTheTask) {
    static QString logged;
    const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& message) { logged += message; });
    startTask("poll", [] { return fail(); });
    Testing::settle();
    qInstallMessageHandler(previous);
    EXPECT_EQ(logged, QStringLiteral("Task poll ended with an exception: broken"));
}

} // namespace
} // namespace Varnel
