#include "EventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>

namespace Varnel::Testing {

void settle() {
    // A handler may queue further work; deferred deletions run last.
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool waitUntil(const std::function<bool()>& condition, int milliseconds) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(milliseconds)) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace Varnel::Testing
