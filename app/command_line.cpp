#include "app/command_line.h"

#include <QCommandLineParser>

namespace ledgewise {

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Small surfaces beside the notch: clipboard history, Downloads, a timer and a launcher."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help and exit."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version and exit."));
    const QCommandLineOption quit(QStringLiteral("quit"), QStringLiteral("End the running Ledgewise, saving everything."));
    parser.addOption(help);
    parser.addOption(version);
    parser.addOption(quit);

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
                             "  --quit         End the running Ledgewise, saving everything.\n"
                             "\nStarting Ledgewise while it runs hands over to the running one.\n"
                             "LEDGEWISE_NOTCH=WIDTHxHEIGHT simulates a notch on the primary screen.\n");
        return result;
    }
    if (parser.isSet(version)) {
        result.action = CommandLine::Action::PrintAndExit;
        result.output = QStringLiteral("ledgewise %1\n").arg(QStringLiteral(LEDGEWISE_VERSION));
        return result;
    }
    if (parser.isSet(quit))
        result.action = CommandLine::Action::Quit;
    return result;
}

} // namespace ledgewise
