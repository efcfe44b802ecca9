#include <VarnelShared/SystemTime.h>
#include <VarnelShared/TerminationSignals.h>
#include <simulator/SEMSSimulator.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTimer>

#include <cstdio>

using namespace Varnel;
using namespace Varnel::Simulator;

namespace {
/// Exit status of a wrong command line.
constexpr int usageError = 2;

/// What the program was started with.
struct CommandLine {
    quint16 port = 0;
    QString logPath; ///< empty: no log file
    JSON settings = JSON::object();
};

/// The argument itself where it is a JSON object, else the content of the file it names.
Result<JSON> settingsFrom(const QString& argument) {
    if (argument.trimmed().startsWith(u'{')) {
        return parseJSON(argument.toUtf8());
    }
    QFile file(argument);
    if (!file.open(QIODevice::ReadOnly)) {
        return failure(SimulatorError{QStringLiteral("%1: %2").arg(argument, file.errorString())});
    }
    return parseJSON(file.readAll());
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QStringLiteral(
        "A simulated SEMS service on the loopback address. Prints its base URL once it listens.\n"
        "While it runs, GET /_control tells how it stands with all its settings, POST a JSON object of settings\n"
        "there to change them, and GET /_control/log to read what was asked. docs/simulator.md explains them."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({QStringLiteral("port"), QStringLiteral("The port; 0, the default, chooses a free one."),
                      QStringLiteral("number"), QStringLiteral("0")});
    parser.addOption({QStringLiteral("settings"),
                      QStringLiteral("A JSON object of settings such as '{\"powerKW\": 3.2}', or a file with one."),
                      QStringLiteral("JSON|FILE"), QStringLiteral("{}")});
    parser.addOption({QStringLiteral("time"), QStringLiteral("The service's time of day now; the machine's without."),
                      QStringLiteral("H:MM")});
    parser.addOption({QStringLiteral("log"), QStringLiteral("Append every request to this file, one JSON line each."),
                      QStringLiteral("file")});
}

Result<CommandLine> parsedCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(arguments);
    if (!parser.positionalArguments().isEmpty()) {
        return failure(SimulatorError{QStringLiteral("%1 is no option.").arg(parser.positionalArguments().first())});
    }
    CommandLine result;
    bool isPort = false;
    result.port = parser.value(QStringLiteral("port")).toUShort(&isPort);
    if (!isPort) {
        return failure(SimulatorError{QStringLiteral("The port is a number from 0 to 65535.")});
    }
    result.logPath = parser.value(QStringLiteral("log"));
    Result<JSON> settings = settingsFrom(parser.value(QStringLiteral("settings")));
    if (!settings || !settings->is_object()) {
        const QString why = settings ? QStringLiteral("no JSON object") : settings.error().localizedDescription();
        return failure(SimulatorError{QStringLiteral("The settings: %1.").arg(why)});
    }
    result.settings = std::move(*settings);
    if (parser.isSet(QStringLiteral("time"))) {
        result.settings["time"] = toUtf8(parser.value(QStringLiteral("time")));
    }
    return result;
}

Result<void> start(SEMSSimulator& simulator, const CommandLine& commandLine) {
    if (Result<void> changed = simulator.change(commandLine.settings); !changed) {
        return changed;
    }
    if (!commandLine.logPath.isEmpty()) {
        if (Result<void> opened = simulator.log().writeTo(commandLine.logPath); !opened) {
            return opened;
        }
    }
    return simulator.listen(commandLine.port);
}

int fail(const Error& error, int status) {
    std::fprintf(stderr, "sems-simulator: %s\n", qUtf8Printable(error.localizedDescription()));
    return status;
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sems-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));
    const TerminationSignals signals([] { QCoreApplication::quit(); });

    const Result<CommandLine> commandLine = parsedCommandLine(QCoreApplication::arguments());
    if (!commandLine) {
        return fail(commandLine.error(), usageError);
    }
    const SystemClock clock;
    SEMSSimulator simulator(clock);
    if (const Result<void> started = start(simulator, *commandLine); !started) {
        return fail(started.error(), EXIT_FAILURE);
    }
    std::printf("%s\n", qUtf8Printable(simulator.baseURL().toString()));
    std::fflush(stdout);
    QTimer secondHand;
    QObject::connect(&secondHand, &QTimer::timeout, &application, [&simulator] {
        if (const Result<void> followed = simulator.followClock(); !followed) {
            QCoreApplication::exit(fail(followed.error(), EXIT_FAILURE));
        }
    });
    secondHand.start(std::chrono::seconds(1));
    return QCoreApplication::exec();
}
