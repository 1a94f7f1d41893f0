#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// What the command line asks for. Parsing is pure so it can be tested without
// starting anything.
struct CommandLine {
    enum class Action { Run, Quit, PrintAndExit };
    Action action = Action::Run;
    QString output; // for PrintAndExit: help, version or an error
    int exitCode = 0;
};

CommandLine parseCommandLine(const QStringList &arguments);

} // namespace ledgewise
