// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <QCommandLineParser>

namespace ledgewise {

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Small surfaces beside the notch: clipboard history, Downloads, a timer and a launcher."));
    const QCommandLineOption help(
        { QStringLiteral("h"), QStringLiteral("help") }, QStringLiteral("Show this help and exit."));
    const QCommandLineOption version(
        { QStringLiteral("v"), QStringLiteral("version") }, QStringLiteral("Show the version and exit."));
    const QCommandLineOption quit(
        QStringLiteral("quit"), QStringLiteral("End the running Ledgewise, saving everything."));
    const QCommandLineOption toggle(QStringLiteral("toggle"),
        QStringLiteral("Open or close a surface of the running Ledgewise."), QStringLiteral("left|right"));
    const QCommandLineOption settings(
        QStringLiteral("settings"), QStringLiteral("Open the running Ledgewise's settings."));
    parser.addOption(help);
    parser.addOption(version);
    parser.addOption(quit);
    parser.addOption(toggle);
    parser.addOption(settings);

    CommandLine result;
    if (!parser.parse(arguments)) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = parser.errorText() + QStringLiteral("\nTry 'ledgewise --help'.\n");
        result.exitCode = 2;
        return result;
    }
    if (!parser.positionalArguments().isEmpty()) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = QStringLiteral("Unexpected argument: %1\nTry 'ledgewise --help'.\n")
                            .arg(parser.positionalArguments().constFirst());
        result.exitCode = 2;
        return result;
    }
    if (parser.isSet(help)) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = QStringLiteral("Usage: ledgewise [options]\n") + parser.applicationDescription()
            + QStringLiteral("\n\nOptions:\n"
                             "  -h, --help     Show this help and exit.\n"
                             "  -v, --version  Show the version and exit.\n"
                             "  --toggle left|right\n"
                             "                 Open or close that side's surface of the running Ledgewise\n"
                             "                 (bind it to a key where global shortcuts cannot be had).\n"
                             "  --settings     Open the running Ledgewise's settings.\n"
                             "  --quit         End the running Ledgewise, saving everything.\n"
                             "The last three talk to the running Ledgewise and fail with 1 when none runs.\n"
                             "\nStarting Ledgewise while it runs hands over to the running one: it opens\n"
                             "the settings unless a Ledgewise window is already showing.\n"
                             "LEDGEWISE_NOTCH=WIDTHxHEIGHT simulates a notch on the primary screen.\n");
        return result;
    }
    if (parser.isSet(version)) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = QStringLiteral("ledgewise %1\n").arg(QStringLiteral(LEDGEWISE_VERSION));
        return result;
    }
    const int commands = int(parser.isSet(quit)) + int(parser.isSet(toggle)) + int(parser.isSet(settings));
    if (commands > 1 || parser.values(toggle).size() > 1) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = QStringLiteral("Give one command at a time.\nTry 'ledgewise --help'.\n");
        result.exitCode = 2;
        return result;
    }
    if (parser.isSet(quit)) {
        result.action = CommandLine::Action::Quit;
    } else if (parser.isSet(settings)) {
        result.action = CommandLine::Action::Settings;
    } else if (parser.isSet(toggle)) {
        const QString side = parser.value(toggle);
        if (side != QLatin1String("left") && side != QLatin1String("right")) {
            result.action = CommandLine::Action::PrintAndExit;
            result.output
                = QStringLiteral("--toggle takes left or right, not '%1'.\nTry 'ledgewise --help'.\n").arg(side);
            result.exitCode = 2;
            return result;
        }
        result.action = CommandLine::Action::Toggle;
        result.side = side;
    }
    return result;
}

} // namespace ledgewise
