// Asks the program that has Varnel's name on the session bus for its item's title, again and again, and prints how
// long it took to answer: what holds its main thread up shows in the longest wait.
//
// main-thread-probe SECONDS [LIMIT]: ends with 1 where an answer took longer than LIMIT milliseconds (100 by default)
// or did not come.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

namespace {

/// In milliseconds; none where no answer came.
std::optional<double> answerTime(QDBusConnection& bus) {
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("com.varnel.menubar"), QStringLiteral("/StatusNotifierItem"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.kde.StatusNotifierItem") << QStringLiteral("Title");
    QElapsedTimer timer;
    timer.start();
    if (bus.call(question).type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const double seconds = arguments.value(1).toDouble();
    const double limit = arguments.size() > 2 ? arguments.at(2).toDouble() : 100;
    QDBusConnection bus = QDBusConnection::sessionBus();
    std::vector<double> times;
    int missing = 0;
    QElapsedTimer run;
    run.start();
    do {
        const std::optional<double> time = answerTime(bus);
        time ? times.push_back(*time) : static_cast<void>(++missing);
        QThread::msleep(5);
    } while (static_cast<double>(run.elapsed()) < seconds * 1000);
    std::sort(times.begin(), times.end());
    if (times.empty()) {
        std::puts("no answer at all");
        return 1;
    }
    std::printf("%zu answers, median %.1f ms, longest %.1f ms, %d missing\n", times.size(), times[times.size() / 2],
                times.back(), missing);
    return missing == 0 && times.back() <= limit ? 0 : 1;
}
