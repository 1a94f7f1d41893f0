// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// cmake --install as a distribution runs it: into a staging folder (DESTDIR) whose path
// holds a space. What lands there is checked file by file, the desktop's files are
// validated, and the installed program is started from there, directly and through a
// session bus that knows only the installed bus service file.

#include "modules/launcher/desktop_entry.h"
#include "tests/support/ledgewise_process.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

const QString serviceName = QStringLiteral("org.ledgewise.Ledgewise");

// Every file below `root` (links and hidden ones too), as paths from the root, sorted.
QStringList filesUnder(const QString &root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next().mid(root.size());
    files.sort();
    return files;
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// A program run to its end: its exit code (-1 when it did not run or end) and what it
// wrote on either channel.
struct Run {
    int exitCode = -1;
    QString output;
};

Run run(const QString &program, const QStringList &arguments,
    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(), int timeout = 30000)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    Run result;
    if (process.waitForFinished(timeout) && process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.output = QString::fromUtf8(process.readAll()).trimmed();
    return result;
}

} // namespace

class TestInstall : public QObject
{
    Q_OBJECT

public slots:
    void settingsRequested() { ++m_settingsRequests; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_temporary.isValid());
        m_root = m_temporary.filePath(QStringLiteral("staged root"));
        m_homeBefore = filesUnder(QDir::homePath());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DESTDIR"), m_root);
        const Run install = run(QStringLiteral(LEDGEWISE_CMAKE),
            { QStringLiteral("--install"), QStringLiteral(LEDGEWISE_BUILD_DIR) }, environment, 120000);
        QVERIFY2(install.exitCode == 0, qPrintable(install.output));
    }

    void theListedFilesAndNothingElseAreInstalled()
    {
        QStringList expected = QStringLiteral(LEDGEWISE_INSTALLED_FILES).split(QLatin1Char('|'));
        expected.sort();
        QCOMPARE(filesUnder(m_root), expected);
        for (const QString &path : expected)
            QVERIFY2(path.startsWith(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/")), qPrintable(path));
        QVERIFY(QFileInfo(staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM))).isExecutable());
        // Nothing beside the staging folder, and nothing in the user's folders.
        QCOMPARE(QDir(m_temporary.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList { QStringLiteral("staged root") });
        QCOMPARE(filesUnder(QDir::homePath()), m_homeBefore);
    }

    void theDesktopEntryValidatesAndNamesTheIdAndProgram()
    {
        const QString entry
            = staged(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share/applications/org.ledgewise.Ledgewise.desktop"));
        const Run validation = run(QStringLiteral("desktop-file-validate"), { entry });
        QCOMPARE(validation.exitCode, 0);
        QCOMPARE(validation.output, QString());
        const QByteArray text = readAll(entry);
        QVERIFY(text.contains("\nExec=ledgewise\n"));
        QVERIFY(text.contains("\nIcon=org.ledgewise.Ledgewise\n"));
        QVERIFY(text.contains("\nCategories=Utility;\n"));
        QVERIFY(text.contains("\n[Desktop Action Settings]\nName=Settings\nExec=ledgewise --settings\n"));
        // The icon it names is the installed one.
        QVERIFY(readAll(staged(QStringLiteral(
                            LEDGEWISE_INSTALL_PREFIX "/share/icons/hicolor/scalable/apps/org.ledgewise.Ledgewise.svg")))
                    .contains("<svg"));
        // And its bitmaps, drawn from it at the sizes their folders name.
        for (const int size : { 16, 22, 24, 32, 48, 64, 128, 256 }) {
            const QImage png(staged(
                QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share/icons/hicolor/%1x%1/apps/org.ledgewise.Ledgewise.png")
                    .arg(size)));
            QCOMPARE(png.size(), QSize(size, size));
            // The tile's middle is drawn, its corners are not.
            QCOMPARE(qAlpha(png.pixel(size / 2, size / 2)), 255);
            QCOMPARE(qAlpha(png.pixel(0, size - 1)), 0);
        }
    }

    void theMetainfoValidatesAndCarriesTheVersion()
    {
        const QString metainfo
            = staged(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share/metainfo/org.ledgewise.Ledgewise.metainfo.xml"));
        const Run validation
            = run(QStringLiteral("appstreamcli"), { QStringLiteral("validate"), QStringLiteral("--no-net"), metainfo });
        QVERIFY2(validation.exitCode == 0, qPrintable(validation.output));
        const QByteArray text = readAll(metainfo);
        QVERIFY(text.contains("<release version=\"" LEDGEWISE_VERSION "\""));
        QVERIFY(text.contains("<launchable type=\"desktop-id\">org.ledgewise.Ledgewise.desktop</launchable>"));
        // The installed program says the same version.
        const Run version = run(staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)), { QStringLiteral("--version") });
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.output, QStringLiteral("ledgewise " LEDGEWISE_VERSION));
        QVERIFY(readAll(staged(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share/man/man1/ledgewise.1")))
                    .contains("\"Ledgewise " LEDGEWISE_VERSION "\""));
    }

    void theDesktopFindsTheEntryByItsIdAndItsProgramShowsItsSurfaces()
    {
        // As a desktop does it: the entry found by its id in the data folders, its Exec
        // line split by the launcher's own rules and its program found on the PATH.
        const QString share = staged(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share"));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(share + QStringLiteral(":/usr/share")));
        const QString entryPath = QStandardPaths::locate(
            QStandardPaths::ApplicationsLocation, QStringLiteral("org.ledgewise.Ledgewise.desktop"));
        QCOMPARE(entryPath, share + QStringLiteral("/applications/org.ledgewise.Ledgewise.desktop"));
        const std::optional<DesktopEntry::Entry> entry
            = DesktopEntry::parse(QString::fromUtf8(readAll(entryPath)), QString());
        QVERIFY(entry);
        QCOMPARE(entry->name, QStringLiteral("Ledgewise"));
        const std::optional<ProgramCommand> command = DesktopEntry::command(*entry, entryPath);
        QVERIFY(command);
        QVERIFY(!command->inTerminal);
        const QString installedBin = QFileInfo(staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM))).absolutePath();
        const QString program = QStandardPaths::findExecutable(command->program, { installedBin });
        QCOMPARE(program, staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)));

        QProcess app;
        app.setProcessChannelMode(QProcess::ForwardedChannels);
        app.start(program, command->arguments);
        QVERIFY(app.waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 20000);
        const Run quit = run(staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)), { QStringLiteral("--quit") });
        QCOMPARE(quit.exitCode, 0);
        QVERIFY(app.waitForFinished(20000));
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.exitCode(), 0);
    }

    void theBusStartsTheInstalledProgramForTheSettingsCommand()
    {
        // The installed service file, with its program moved to where it was staged: a
        // path with a space, quoted as the file quotes it.
        const QString services = m_temporary.filePath(QStringLiteral("bus services"));
        QVERIFY(QDir().mkpath(services));
        QByteArray service = readAll(
            staged(QStringLiteral(LEDGEWISE_INSTALL_PREFIX "/share/dbus-1/services/org.ledgewise.Ledgewise.service")));
        QVERIFY2(service.contains("\nName=org.ledgewise.Ledgewise\n"), service.constData());
        QVERIFY2(service.contains("\nExec=\"" LEDGEWISE_INSTALLED_PROGRAM "\"\n"), service.constData());
        service.replace(LEDGEWISE_INSTALLED_PROGRAM, staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)).toUtf8());
        QVERIFY(writeFile(services + QStringLiteral("/org.ledgewise.Ledgewise.service"), service));

        const QString config = m_temporary.filePath(QStringLiteral("bus.conf"));
        QVERIFY(writeFile(config,
            QStringLiteral("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
                           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                           "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>\n"
                           "<servicedir>%1</servicedir>\n"
                           "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n")
                .arg(services)
                .toUtf8()));
        QProcess daemon;
        daemon.start(QStringLiteral("dbus-daemon"),
            { QStringLiteral("--config-file=") + config, QStringLiteral("--nofork"),
                QStringLiteral("--print-address=1") });
        QVERIFY(daemon.waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(daemon.canReadLine() || daemon.waitForReadyRead(100), 10000);
        const QString address = QString::fromUtf8(daemon.readLine()).trimmed();
        QVERIFY2(!address.isEmpty(), qPrintable(QString::fromUtf8(daemon.readAllStandardError())));
        {
            QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("installed service bus"));
            QVERIFY(bus.isConnected());
            QVERIFY(bus.connect(QString(), QStringLiteral("/org/ledgewise/Ledgewise"), serviceName,
                QStringLiteral("SettingsRequested"), this, SLOT(settingsRequested())));
            QVERIFY(!bus.interface()->isServiceRegistered(serviceName));

            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
            const Run settings = run(
                staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)), { QStringLiteral("--settings") }, environment);
            QVERIFY2(settings.exitCode == 0, qPrintable(settings.output));
            QVERIFY(bus.interface()->isServiceRegistered(serviceName));
            QTRY_VERIFY(m_settingsRequests > 0);
            QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 20000);

            QCOMPARE(run(staged(QStringLiteral(LEDGEWISE_INSTALLED_PROGRAM)), { QStringLiteral("--quit") }, environment)
                         .exitCode,
                0);
            QTRY_VERIFY_WITH_TIMEOUT(!bus.interface()->isServiceRegistered(serviceName), 20000);
        }
        QDBusConnection::disconnectFromBus(QStringLiteral("installed service bus"));
        daemon.terminate();
        QVERIFY(daemon.waitForFinished(10000));
    }

private:
    QString staged(const QString &installedPath) const { return m_root + installedPath; }

    QTemporaryDir m_temporary;
    QString m_root;
    QStringList m_homeBefore;
    int m_settingsRequests = 0;
};

QTEST_GUILESS_MAIN(TestInstall)
#include "test_install.moc"
