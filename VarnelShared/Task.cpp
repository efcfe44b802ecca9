#include <VarnelShared/Task.h>

#include <VarnelShared/Logging.h>

#include <QCoreApplication>

#include <exception>
#include <utility>

namespace Varnel {

namespace {
QCoro::Task<void> runToEnd(const char* name, std::function<QCoro::Task<void>()> body) {
    try {
        QCoro::Task<void> task = body();
        co_await std::move(task);
    } catch (const std::exception& escaped) {
        qCCritical(lcApp, "Task %s ended with an exception: %s", name, escaped.what());
    } catch (...) {
        qCCritical(lcApp, "Task %s ended with an unknown exception", name);
    }
}
} // namespace

void startTask(const char* name, std::function<QCoro::Task<void>()> body) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [name, body = std::move(body)]() mutable { runToEnd(name, std::move(body)); },
        Qt::QueuedConnection);
}

} // namespace Varnel
