#include <VarnelShared/SystemTime.h>
#include <VarnelShared/TerminationSignals.h>
#include <simulator/CommandLine.h>
#include <simulator/SEMSSimulator.h>

#include <QCoreApplication>

#include <cstdio>

using namespace Varnel;
using namespace Varnel::Simulator;

namespace {
/// Exit status of a wrong command line.
constexpr int usageError = 2;

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

    const Result<CommandLine> commandLine = CommandLine::parse(QCoreApplication::arguments());
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
    return QCoreApplication::exec();
}
