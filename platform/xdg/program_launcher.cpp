// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/program_launcher.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace ledgewise {

namespace {

// The executable a command names, by path or on PATH; empty when there is none.
QString executable(const QString &program)
{
    if (program.contains(QLatin1Char('/'))) {
        const QFileInfo file(program);
        return file.isFile() && file.isExecutable() ? file.absoluteFilePath() : QString();
    }
    return QStandardPaths::findExecutable(program);
}

} // namespace

ProgramCommand DetachedProgramLauncher::inTerminal(const ProgramCommand &command, const QString &terminal)
{
    if (terminal.isEmpty())
        return command;
    return { terminal, QStringList { QStringLiteral("-e"), command.program } + command.arguments,
        command.workingDirectory, false };
}

bool DetachedProgramLauncher::launch(const ProgramCommand &command)
{
    // A program that is not there starts nothing, not even the terminal it would run in.
    const QString program = executable(command.program);
    if (program.isEmpty())
        return false;
    ProgramCommand resolved = command;
    resolved.program = program;
    if (command.inTerminal)
        resolved = inTerminal(resolved, QStandardPaths::findExecutable(QStringLiteral("x-terminal-emulator")));
    if (!resolved.workingDirectory.isEmpty() && !QFileInfo(resolved.workingDirectory).isDir())
        return false;
    return QProcess::startDetached(resolved.program, resolved.arguments, resolved.workingDirectory);
}

} // namespace ledgewise
