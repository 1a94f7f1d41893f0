#include "app/command_line.h"

#include <QTest>

using namespace ledgewise;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void plainStartRuns()
    {
        QCOMPARE(parseCommandLine({QStringLiteral("ledgewise")}).action, CommandLine::Action::Run);
    }

    void versionAndHelpPrintAndExitCleanly()
    {
        const CommandLine version = parseCommandLine({QStringLiteral("ledgewise"), QStringLiteral("--version")});
        QCOMPARE(version.action, CommandLine::Action::PrintAndExit);
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.output, QStringLiteral("ledgewise " LEDGEWISE_VERSION "\n"));

        const CommandLine help = parseCommandLine({QStringLiteral("ledgewise"), QStringLiteral("-h")});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.output.contains(QStringLiteral("--quit")));
        QVERIFY(help.output.contains(QStringLiteral("--version")));
    }

    void quitAsksTheRunningInstance()
    {
        QCOMPARE(parseCommandLine({QStringLiteral("ledgewise"), QStringLiteral("--quit")}).action,
                 CommandLine::Action::Quit);
    }

    void unknownOptionOrArgumentIsAnErrorWithAHint()
    {
        for (const QString &bad : {QStringLiteral("--frobnicate"), QStringLiteral("extra")}) {
            const CommandLine result = parseCommandLine({QStringLiteral("ledgewise"), bad});
            QCOMPARE(result.action, CommandLine::Action::PrintAndExit);
            QCOMPARE(result.exitCode, 2);
            QVERIFY(result.output.contains(QStringLiteral("ledgewise --help")));
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
