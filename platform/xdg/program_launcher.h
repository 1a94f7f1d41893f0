// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// A program to start: what, with which arguments, where, and whether it wants a
// terminal to run in.
struct ProgramCommand {
    QString program;
    QStringList arguments;
    QString workingDirectory; // empty: Ledgewise's own
    bool inTerminal = false;

    bool operator==(const ProgramCommand &) const = default;
};

// Starts a program, detached from Ledgewise so it outlives it.
class ProgramLauncher
{
public:
    virtual ~ProgramLauncher() = default;
    // False when it could not be started (not found, not executable, no such working
    // directory); callers stay quiet about it.
    virtual bool launch(const ProgramCommand &command) = 0;
};

class DetachedProgramLauncher final : public ProgramLauncher
{
public:
    bool launch(const ProgramCommand &command) override;

    // The command line that runs `command` inside `terminal` (Debian's
    // x-terminal-emulator convention: TERMINAL -e PROGRAM ARGS...); `command` itself
    // when there is no terminal to run it in.
    static ProgramCommand inTerminal(const ProgramCommand &command, const QString &terminal);
};

} // namespace ledgewise
