// Calls every object of the program that has Varnel's name on the session bus with junk, a thousand times a second:
// methods that do not exist, arguments that do not fit, properties that cannot be set, rows that the menu does not
// have. None of it is a command as a caller who means it would send it. With the ID of a row of the exported menu, the
// calls are clicks on that row instead.
//
// bus-flood-calls SECONDS [ID]: prints how many calls were made and how many errors came back.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

namespace {

constexpr int callsPerSecond = 1000;
constexpr int ticksPerSecond = 100;

struct Call {
    const char* path;
    const char* interface;
    const char* method;
};

constexpr char outputPath[] = "/com/varnel/menubar/Output";
constexpr char outputInterface[] = "com.varnel.menubar.Output";
constexpr char propertiesInterface[] = "org.freedesktop.DBus.Properties";

constexpr Call calls[] = {
    {outputPath, outputInterface, "Refresh"},
    {outputPath, outputInterface, "ShowOutput"},
    {outputPath, outputInterface, "ShowSettings"},
    {outputPath, outputInterface, "SignOut"},
    {outputPath, outputInterface, "deleteLater"},
    {outputPath, propertiesInterface, "Set"},
    {outputPath, propertiesInterface, "Get"},
    {outputPath, propertiesInterface, "GetAll"},
    {outputPath, "org.freedesktop.DBus.Introspectable", "Introspect"},
    {outputPath, "org.freedesktop.DBus.Peer", "Ping"},
    {"/com/varnel/menubar", "org.freedesktop.Application", "Activate"},
    {"/com/varnel/menubar", "org.freedesktop.Application", "Open"},
    {"/com/varnel/menubar", "org.freedesktop.Application", "ActivateAction"},
    {"/com/varnel/menubar", propertiesInterface, "Set"},
    {"/MenuBar", "com.canonical.dbusmenu", "GetLayout"},
    {"/MenuBar", "com.canonical.dbusmenu", "Event"},
    {"/MenuBar", "com.canonical.dbusmenu", "GetProperty"},
    {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate"},
    {"/StatusNotifierItem", propertiesInterface, "Set"},
    {"/no/such/object", "no.such.Interface", "Nothing"},
};

int number(int below) {
    return static_cast<int>(QRandomGenerator::global()->bounded(below));
}

/// None of these fits a method as its first argument, but for the name of an interface in a call that reads.
QVariantList junk(const Call& call) {
    const QString text = QString(number(4000), QChar(u'x'));
    const QVariant wrong = QVariant::fromValue(QDBusVariant(-1e300));
    const std::vector<QVariantList> candidates{{1.5},
                                               {text},
                                               {true, text},
                                               {-1, -1, -1, -1},
                                               {QByteArray(number(4000), '\0')},
                                               {wrong},
                                               {QString::fromLatin1(outputInterface), QStringLiteral("PowerKW"), wrong},
                                               {QString::fromLatin1(call.interface), text},
                                               {100000 + number(1000), QStringLiteral("clicked"), wrong, 0U}};
    return candidates[static_cast<std::size_t>(number(static_cast<int>(candidates.size())))];
}

QDBusMessage callTo(const Call& call, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(QStringLiteral("com.varnel.menubar"), QString::fromLatin1(call.path),
                                       QString::fromLatin1(call.interface), QString::fromLatin1(call.method));
    message.setArguments(arguments);
    return message;
}

QDBusMessage click(int row) {
    return callTo({"/MenuBar", "com.canonical.dbusmenu", "Event"},
                  {row, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const double seconds = QCoreApplication::arguments().value(1).toDouble();
    const int row = QCoreApplication::arguments().value(2).toInt();
    QDBusConnection bus = QDBusConnection::sessionBus();
    int made = 0;
    int answered = 0;
    int errors = 0;
    const auto send = [&] {
        const Call& call = calls[number(std::size(calls))];
        ++made;
        auto* watcher =
            new QDBusPendingCallWatcher(bus.asyncCall(row > 0 ? click(row) : callTo(call, junk(call))), &application);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &application, [&, watcher] {
            ++answered;
            errors += watcher->isError() ? 1 : 0;
            watcher->deleteLater();
            if (answered == made && made >= seconds * callsPerSecond) {
                QCoreApplication::quit();
            }
        });
    };
    QElapsedTimer run;
    run.start();
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &application, [&] {
        const double due = std::min(seconds, static_cast<double>(run.elapsed()) / 1000) * callsPerSecond;
        while (made < due) {
            send();
        }
    });
    tick.start(1000 / ticksPerSecond);
    QTimer::singleShot(static_cast<int>(seconds * 1000) + 30000, &application, [] { QCoreApplication::exit(1); });
    const int status = QCoreApplication::exec();
    std::printf("%d calls in %.1f s, %d answered, %d with an error\n", made, static_cast<double>(run.elapsed()) / 1000,
                answered, errors);
    return status;
}
