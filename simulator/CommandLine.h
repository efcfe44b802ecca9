#pragma once

#include <VarnelShared/JSON.h>

#include <QString>
#include <QStringList>

namespace Varnel::Simulator {

/// What the program was started with.
struct CommandLine {
    quint16 port = 0;
    QString logPath;                ///< empty: no log file
    JSON settings = JSON::object(); ///< as a control request would have them

    /// Reads the arguments; every setting is an option of its own. Fails with `SimulatorError`. With --help or
    /// --version the process ends here.
    static Result<CommandLine> parse(const QStringList& arguments);
};

} // namespace Varnel::Simulator
