// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <QTest>

using namespace ledgewise;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void plainStartRuns()
    {
        QCOMPARE(parseCommandLine({ QStringLiteral("ledgewise") }).action, CommandLine::Action::Run);
    }

    void versionAndHelpPrintAndExitCleanly()
    {
        const CommandLine version = parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--version") });
        QCOMPARE(version.action, CommandLine::Action::PrintAndExit);
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.output, QStringLiteral("ledgewise " LEDGEWISE_VERSION "\n"));

        const CommandLine help = parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("-h") });
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.output.contains(QStringLiteral("--quit")));
        QVERIFY(help.output.contains(QStringLiteral("--version")));
    }

    void quitAsksTheRunningInstance()
    {
        QCOMPARE(parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--quit") }).action,
            CommandLine::Action::Quit);
    }

    void toggleNamesASideOfTheRunningInstance()
    {
        for (const QString &side : { QStringLiteral("left"), QStringLiteral("right") }) {
            const CommandLine toggle
                = parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--toggle"), side });
            QCOMPARE(toggle.action, CommandLine::Action::Toggle);
            QCOMPARE(toggle.side, side);
            QCOMPARE(parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--toggle=") + side }).side, side);
        }
    }

    void toggleWithoutAKnownSideIsAnErrorWithAHint()
    {
        const QList<QStringList> bad = {
            { QStringLiteral("--toggle") }, { QStringLiteral("--toggle"), QStringLiteral("middle") },
            { QStringLiteral("--toggle"), QStringLiteral("Left") },
            { QStringLiteral("--toggle"), QStringLiteral("left"), QStringLiteral("--toggle"), QStringLiteral("right") }
        };
        for (const QStringList &arguments : bad) {
            const CommandLine result = parseCommandLine(QStringList { QStringLiteral("ledgewise") } + arguments);
            QCOMPARE(result.action, CommandLine::Action::PrintAndExit);
            QCOMPARE(result.exitCode, 2);
            QVERIFY2(result.output.contains(QStringLiteral("ledgewise --help")), qPrintable(result.output));
        }
        QVERIFY(parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--toggle"), QStringLiteral("middle") })
                    .output.startsWith(QStringLiteral("--toggle takes left or right, not 'middle'.\n")));
    }

    void settingsAsksTheRunningInstance()
    {
        QCOMPARE(parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--settings") }).action,
            CommandLine::Action::Settings);
    }

    void oneCommandAtATime()
    {
        const CommandLine both
            = parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--settings"), QStringLiteral("--quit") });
        QCOMPARE(both.action, CommandLine::Action::PrintAndExit);
        QCOMPARE(both.exitCode, 2);
        QVERIFY(both.output.startsWith(QStringLiteral("Give one command at a time.\n")));
    }

    void helpListsEveryCommand()
    {
        const CommandLine help = parseCommandLine({ QStringLiteral("ledgewise"), QStringLiteral("--help") });
        for (const char *option : { "--toggle left|right", "--settings", "--quit", "--version", "--help" })
            QVERIFY2(help.output.contains(QLatin1String(option)), option);
    }

    void unknownOptionOrArgumentIsAnErrorWithAHint()
    {
        for (const QString &bad : { QStringLiteral("--frobnicate"), QStringLiteral("extra") }) {
            const CommandLine result = parseCommandLine({ QStringLiteral("ledgewise"), bad });
            QCOMPARE(result.action, CommandLine::Action::PrintAndExit);
            QCOMPARE(result.exitCode, 2);
            QVERIFY(result.output.contains(QStringLiteral("ledgewise --help")));
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
