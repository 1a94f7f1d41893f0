// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// What the command line asks for. Parsing is pure so it can be tested without
// starting anything.
struct CommandLine {
    // Run starts Ledgewise; Quit, Toggle and Settings are commands for the running one.
    enum class Action { Run, Quit, Toggle, Settings, PrintAndExit };
    Action action = Action::Run;
    QString output; // for PrintAndExit: help, version or an error
    int exitCode = 0;
    QString side; // for Toggle: "left" or "right"
};

CommandLine parseCommandLine(const QStringList &arguments);

// What a command says when no Ledgewise runs to carry it out (one line).
inline constexpr char notRunningMessage[] = "Ledgewise is not running.\n";

} // namespace ledgewise
