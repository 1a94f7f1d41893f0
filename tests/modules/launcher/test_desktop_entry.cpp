// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Reading Desktop Entry files and turning their Exec line into the command the desktop
// would start; then starting such commands for real.
#include "modules/launcher/desktop_entry.h"
#include "modules/launcher/launcher_actions.h"
#include "platform/xdg/program_launcher.h"
#include "tests/support/recording_url_opener.h"
#include "tests/support/test_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;
using ledgewise::testing::readAll;

Q_DECLARE_METATYPE(std::optional<QStringList>)

namespace {

DesktopEntry::Entry parsed(const QString &text, const QString &locale = QStringLiteral("C"))
{
    const auto entry = DesktopEntry::parse(text, locale);
    return entry ? *entry : DesktopEntry::Entry { QStringLiteral("<none>"), {}, {}, {}, false };
}

void writeFile(const QString &path, const QByteArray &bytes, QFileDevice::Permissions permissions = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    if (permissions)
        QVERIFY(file.setPermissions(permissions));
}

constexpr QFileDevice::Permissions executable
    = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

} // namespace

class TestDesktopEntry : public QObject
{
    Q_OBJECT

private slots:
    void valuesAreReadWithSpacesAroundTheEqualsSignAndEscapes()
    {
        const auto entry = parsed(QStringLiteral("# a comment\n"
                                                 "[Desktop Entry]\n"
                                                 "Type = Application\n"
                                                 "Name  =  Tab\\tand\\sspace\\\\ \n"
                                                 "Exec=prog\n"
                                                 "Icon= org.example.Icon\n"
                                                 "Path =/tmp/work\\sdir\n"
                                                 "Terminal = true\n"
                                                 "Name=second Name is ignored\n"
                                                 "[Desktop Action New]\n"
                                                 "Exec=other\n"));
        QCOMPARE(entry.name, QStringLiteral("Tab\tand space\\"));
        QCOMPARE(entry.exec, QStringLiteral("prog"));
        QCOMPARE(entry.icon, QStringLiteral("org.example.Icon"));
        QCOMPARE(entry.workingDirectory, QStringLiteral("/tmp/work dir"));
        QVERIFY(entry.terminal);
        QCOMPARE(parsed(QStringLiteral("[Desktop Entry]\nName=A\\nB\\rC\n")).name, QStringLiteral("A\nB\rC"));
        QVERIFY(!parsed(QStringLiteral("[Desktop Entry]\nTerminal=false\n")).terminal);
        QVERIFY(!DesktopEntry::parse(QStringLiteral("[Other Group]\nName=x\n"), QStringLiteral("C")));
        QVERIFY(!DesktopEntry::parse(QStringLiteral("not an entry at all"), QStringLiteral("C")));
    }

    void nameIsTranslatedForTheLocale_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("name");
        QTest::newRow("country and modifier") << "sr_RS@latin"
                                              << "sr_RS@latin";
        QTest::newRow("country") << "sr_RS"
                                 << "sr_RS";
        QTest::newRow("language and modifier") << "sr_ME@latin"
                                               << "sr@latin";
        QTest::newRow("language") << "sr_ME"
                                  << "sr";
        QTest::newRow("untranslated") << "fr_FR"
                                      << "plain";
        QTest::newRow("C") << "C"
                           << "plain";
    }
    void nameIsTranslatedForTheLocale()
    {
        QFETCH(QString, locale);
        QFETCH(QString, name);
        const QString text = QStringLiteral("[Desktop Entry]\nName=plain\nName[sr]=sr\nName[sr@latin]=sr@latin\n"
                                            "Name[sr_RS]=sr_RS\nName[sr_RS@latin]=sr_RS@latin\n");
        QCOMPARE(parsed(text, locale).name, name);
    }

    void messagesLocaleDropsTheEncoding()
    {
        const QByteArray before = qgetenv("LC_ALL");
        qputenv("LC_ALL", "de_DE.UTF-8@euro");
        const QString withModifier = DesktopEntry::messagesLocale();
        qputenv("LC_ALL", "pt_BR.UTF-8");
        const QString withoutModifier = DesktopEntry::messagesLocale();
        if (before.isNull())
            qunsetenv("LC_ALL");
        else
            qputenv("LC_ALL", before);
        QCOMPARE(withModifier, QStringLiteral("de_DE@euro"));
        QCOMPARE(withoutModifier, QStringLiteral("pt_BR"));
    }

    void execLines_data()
    {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<std::optional<QStringList>>("arguments");
        const auto list = [](std::initializer_list<const char *> words) {
            QStringList out;
            for (const char *word : words)
                out << QString::fromUtf8(word);
            return std::optional<QStringList>(out);
        };
        QTest::newRow("plain") << "prog --new-window" << list({ "prog", "--new-window" });
        QTest::newRow("extra spaces") << "  prog   a\tb " << list({ "prog", "a", "b" });
        QTest::newRow("files and urls dropped") << "prog %f %F %u %U" << list({ "prog" });
        QTest::newRow("deprecated codes dropped") << "prog %d %D %n %N %v %m end" << list({ "prog", "end" });
        QTest::newRow("percent") << "prog 100%% %%f" << list({ "prog", "100%", "%f" });
        QTest::newRow("icon") << "prog %i" << list({ "prog", "--icon", "org.example.Icon" });
        QTest::newRow("name") << "prog --title=%c" << list({ "prog", "--title=Caf\u00e9 Notes" });
        QTest::newRow("entry path") << "prog %k" << list({ "prog", "/apps/notes.desktop" });
        QTest::newRow("quoted") << "\"/opt/My App/run\" \"two words\"" << list({ "/opt/My App/run", "two words" });
        QTest::newRow("escapes in quotes")
            << "sh -c \"echo \\\"hi\\\" \\`x\\` \\$HOME \\\\\"" << list({ "sh", "-c", "echo \"hi\" `x` $HOME \\" });
        QTest::newRow("other backslash in quotes kept") << "prog \"a\\nb\"" << list({ "prog", "a\\nb" });
        QTest::newRow("empty quotes kept") << "prog \"\" x" << list({ "prog", "", "x" });
        QTest::newRow("quoted part joins") << "prog --name=\"a b\"" << list({ "prog", "--name=a b" });
        QTest::newRow("unbalanced quote") << "prog \"open" << std::optional<QStringList>();
        QTest::newRow("empty") << "" << std::optional<QStringList>();
        QTest::newRow("only field codes") << "%U %f" << std::optional<QStringList>();
        QTest::newRow("empty program") << "\"\" arg" << std::optional<QStringList>();
    }
    void execLines()
    {
        QFETCH(QString, exec);
        QFETCH(std::optional<QStringList>, arguments);
        const DesktopEntry::Entry entry { QStringLiteral("Caf\u00e9 Notes"), exec, QStringLiteral("org.example.Icon"),
            {}, false };
        QCOMPARE(DesktopEntry::execArguments(entry, QStringLiteral("/apps/notes.desktop")), arguments);
    }

    void iconCodeWithoutAnIconLeavesNothing()
    {
        const DesktopEntry::Entry entry { QStringLiteral("N"), QStringLiteral("prog %i x"), {}, {}, false };
        QCOMPARE(DesktopEntry::execArguments(entry, {}), QStringList({ "prog", "x" }));
    }

    void fileEscapesComeBeforeTheQuotingRules()
    {
        // In the file, a backslash inside quotes is itself written escaped.
        const auto entry = parsed(
            QString::fromLatin1("[Desktop Entry]\nExec=sh -c \"printf '%%s' \\\\\"a\\sb\\\\\" \\\\\\\\$X\"\n"));
        QCOMPARE(DesktopEntry::execArguments(entry, {}), QStringList({ "sh", "-c", "printf '%s' \"a b\" \\$X" }));
    }

    void commandCarriesPathAndTerminal()
    {
        const auto entry = parsed(QStringLiteral("[Desktop Entry]\nExec=top -d 1\nPath=/var/tmp\nTerminal=true\n"));
        QCOMPARE(DesktopEntry::command(entry, {}),
            ProgramCommand({ QStringLiteral("top"), { QStringLiteral("-d"), QStringLiteral("1") },
                QStringLiteral("/var/tmp"), true }));
        const ProgramCommand inTerminal = DetachedProgramLauncher::inTerminal(
            *DesktopEntry::command(entry, {}), QStringLiteral("/usr/bin/x-terminal-emulator"));
        QCOMPARE(inTerminal.program, QStringLiteral("/usr/bin/x-terminal-emulator"));
        QCOMPARE(inTerminal.arguments, QStringList({ "-e", "top", "-d", "1" }));
        QCOMPARE(inTerminal.workingDirectory, QStringLiteral("/var/tmp"));
        QCOMPARE(
            DetachedProgramLauncher::inTerminal(*DesktopEntry::command(entry, {}), {}).program, QStringLiteral("top"));
    }

    // The real launcher: programs really start, in the entry's folder; broken ones do not.
    void pinnedEntryStartsInItsPathWithItsArguments()
    {
        QTemporaryDir folder;
        const QString work = folder.filePath(QStringLiteral("work dir"));
        QVERIFY(QDir().mkpath(work));
        // Quoted as the file format wants it: \\" and \\$ in the file are \" and \$ in the
        // Exec value, which are " and $ in the argument.
        writeFile(folder.filePath("app.desktop"),
            (QString::fromLatin1("[Desktop Entry]\nName=Writer\nIcon=writer\nExec=sh -c \"pwd > ran.txt; printf '%%s|' "
                                 "\\\\\"\\\\$0\\\\\" \\\\\"\\\\$@\\\\\" >> ran.txt\" %c %i %U\nPath=")
                + QString(work).replace(QLatin1Char(' '), QStringLiteral("\\s")) + QLatin1Char('\n'))
                .toUtf8());
        const auto item = LauncherActions::itemForFile(LauncherItem::Kind::application, folder.filePath("app.desktop"));
        QVERIFY(item);
        QCOMPARE(item->title, QStringLiteral("Writer"));
        RecordingUrlOpener opener;
        DetachedProgramLauncher launcher;
        LauncherActions::open(*item, opener, launcher);
        const QString ran = QDir(work).filePath(QStringLiteral("ran.txt"));
        QTRY_COMPARE(readAll(ran), (work + QStringLiteral("\nWriter|--icon|writer|")).toUtf8());
        QVERIFY(opener.opened.isEmpty());
    }

    void terminalEntryRunsInTheTerminalEmulator()
    {
        QTemporaryDir folder;
        // A terminal emulator that notes what it was asked to run.
        writeFile(folder.filePath("x-terminal-emulator"),
            QStringLiteral("#!/bin/sh\nprintf '%s|' \"$@\" > %1/terminal.txt\n").arg(folder.path()).toUtf8(),
            executable);
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", folder.path().toUtf8() + ':' + path);
        writeFile(folder.filePath("tui.desktop"), "[Desktop Entry]\nName=Tui\nExec=true --flag %F\nTerminal=true\n");
        const auto item = LauncherActions::itemForFile(LauncherItem::Kind::application, folder.filePath("tui.desktop"));
        RecordingUrlOpener opener;
        DetachedProgramLauncher launcher;
        LauncherActions::open(*item, opener, launcher);
        qputenv("PATH", path);
        QTRY_COMPARE(readAll(folder.filePath("terminal.txt")),
            "-e|" + QStandardPaths::findExecutable(QStringLiteral("true")).toUtf8() + "|--flag|");
    }

    void brokenEntriesStartNothingAndSayNothing_data()
    {
        QTest::addColumn<QByteArray>("exec");
        QTest::newRow("unbalanced quote") << QByteArray("sh -c \"touch DIR/started");
        QTest::newRow("missing program") << QByteArray("ledgewise-no-such-program-anywhere touch DIR/started");
        QTest::newRow("missing program in a terminal")
            << QByteArray("ledgewise-no-such-program-anywhere\nTerminal=true");
        QTest::newRow("missing working folder") << QByteArray("touch DIR/started\nPath=/no/such/folder");
        QTest::newRow("no program") << QByteArray("%U %f");
    }
    void brokenEntriesStartNothingAndSayNothing()
    {
        QFETCH(QByteArray, exec);
        QTemporaryDir folder;
        exec.replace("DIR", folder.path().toUtf8());
        writeFile(folder.filePath("broken.desktop"), "[Desktop Entry]\nName=Broken\nExec=" + exec + "\n");
        const auto item
            = LauncherActions::itemForFile(LauncherItem::Kind::application, folder.filePath("broken.desktop"));
        QVERIFY(item);
        RecordingUrlOpener opener;
        DetachedProgramLauncher launcher;
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        LauncherActions::open(*item, opener, launcher);
        QTest::qWait(300); // long enough for a started program to have made its file
        QVERIFY(!QFileInfo::exists(folder.filePath("started")));
        QVERIFY(opener.opened.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDesktopEntry)
#include "test_desktop_entry.moc"
