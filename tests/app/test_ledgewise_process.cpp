// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/ledgewise_process.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <memory>

using namespace ledgewise::testing;

namespace {

QString executable()
{
    return qEnvironmentVariable("LEDGEWISE_EXECUTABLE");
}

QString settingsFile()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("Ledgewise/Ledgewise.conf"));
}

bool instanceRunning()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.ledgewise.Ledgewise"));
}

} // namespace

class TestLedgewiseProcess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(QFile::exists(executable()), qPrintable(executable())); }

    void cleanup()
    {
        // Nothing may be left running for the next case.
        if (m_app) {
            m_app->kill();
            m_app->waitForFinished();
            m_app.reset();
        }
    }

    void versionAndHelpNeedNoDisplay()
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        process.setProcessEnvironment(environment);
        process.start(executable(), { QStringLiteral("--version") });
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardOutput(), QByteArray("ledgewise " LEDGEWISE_VERSION "\n"));

        const Finished help = runLedgewise({ QStringLiteral("--help") });
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.contains("--quit"));
        QVERIFY(help.out.contains("LEDGEWISE_NOTCH"));
    }

    void unknownOptionFails()
    {
        const Finished result = runLedgewise({ QStringLiteral("--no-such-option") });
        QCOMPARE(result.exitCode, 2);
        QVERIFY(result.err.contains("ledgewise --help"));
    }

    void quitWithNothingRunningSaysSo()
    {
        const Finished result = runLedgewise({ QStringLiteral("--quit") });
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.startsWith("Ledgewise is not running.\n"), result.err.constData());
    }

    void startsLoadsAndQuitsOnTheQuitCommandWithEverythingSaved()
    {
        startApp();
        QVERIFY(m_app->state() == QProcess::Running);

        const Finished quit = runLedgewise({ QStringLiteral("--quit") });
        QCOMPARE(quit.exitCode, 0);
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app->exitCode(), 0);
        QVERIFY(!instanceRunning());

        // The two toggle shortcuts were created with their defaults; the preferences
        // were only read, so nothing of them is written.
        QSettings file(settingsFile(), QSettings::NativeFormat);
        QCOMPARE(file.value(QStringLiteral("GlobalShortcuts_toggleLeft")).toString(),
            QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2048})"));
        QCOMPARE(file.value(QStringLiteral("GlobalShortcuts_toggleRight")).toString(),
            QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2560})"));
        QVERIFY(!file.contains(QStringLiteral("ledgewise.preferences")));
    }

    void endsCleanlyOnSigtermAndSigint()
    {
        startApp();
        m_app->terminate(); // SIGTERM
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app->exitCode(), 0);

        startApp();
        ::kill(pid_t(m_app->processId()), SIGINT);
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app->exitCode(), 0);
    }

    void secondStartHandsOverToTheRunningOne()
    {
        startApp();
        const Finished second = runLedgewise({});
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(second.out, QByteArray("Ledgewise is already running.\n"));
        QCOMPARE(m_app->state(), QProcess::Running);
        QVERIFY(instanceRunning());
    }

    void brokenSettingsDoNotStopTheStart()
    {
        {
            QSettings file(settingsFile(), QSettings::NativeFormat);
            file.setValue(QStringLiteral("ledgewise.preferences"), QByteArray("{\"placement\":\x01\xff", 15));
            file.setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), QStringLiteral("[[[not json"));
        }
        startApp();
        QCOMPARE(runLedgewise({ QStringLiteral("--quit") }).exitCode, 0);
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitCode(), 0);
        // A bad document is left for the next change to replace; a bad shortcut is not repaired.
        QSettings file(settingsFile(), QSettings::NativeFormat);
        QCOMPARE(file.value(QStringLiteral("ledgewise.preferences")).toByteArray(),
            QByteArray("{\"placement\":\x01\xff", 15));
        QCOMPARE(file.value(QStringLiteral("GlobalShortcuts_toggleLeft")).toString(), QStringLiteral("[[[not json"));
    }

    void quitLedgewiseFromTheSurfaceMenu()
    {
        startApp();
        // The left surface of the 1512-wide virtual screen sleeps at x 80, 76 wide.
        QTRY_VERIFY(!xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                                 QStringLiteral("Ledgewise left surface") })
                         .isEmpty());
        const auto windows = [] {
            return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                               QString::number(m_pid) })
                .split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                .size();
        };
        m_pid = m_app->processId();
        const qsizetype surfaces = windows();
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("118"), QStringLiteral("14") });
        xdotool({ QStringLiteral("click"), QStringLiteral("3") });
        // The menu opens as a window of its own and takes the keyboard: Up wraps to
        // its last item.
        QTRY_VERIFY(windows() > surfaces);
        xdotool({ QStringLiteral("key"), QStringLiteral("Up"), QStringLiteral("Return") });
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app->exitCode(), 0);
    }

    void secondStartWithoutASessionBusExitsAndLeavesTheHistoryAlone()
    {
        // No bus at all: a dead address, so that nothing can start one either.
        auto first = startWithoutBus();
        QVERIFY(first);
        QVERIFY(copyToClipboard("copied while the first one runs"));
        const QString history = historyFile();
        QTRY_VERIFY_WITH_TIMEOUT(QFile(history).size() > 0, 10000);
        const QByteArray before = readAll(history);
        QVERIFY(before.contains("copied while the first one runs"));

        QProcess second;
        second.setProcessEnvironment(environmentWithoutBus());
        second.start(executable(), {});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 1);
        const QByteArray said = second.readAllStandardError();
        QVERIFY2(
            said.startsWith("Ledgewise is already running as process " + QByteArray::number(first->processId())), said);
        QCOMPARE(said.count('\n'), 1);
        QCOMPARE(first->state(), QProcess::Running);
        QCOMPARE(readAll(history), before);

        // The first one still keeps the history.
        QVERIFY(copyToClipboard("copied after the second start"));
        QTRY_VERIFY_WITH_TIMEOUT(readAll(history).contains("copied after the second start"), 10000);
        first->terminate();
        QVERIFY(first->waitForFinished(10000));
        QCOMPARE(first->exitCode(), 0);
    }

    void lockOfAKilledInstanceDoesNotBlockTheNextStart()
    {
        auto killed = startWithoutBus();
        QVERIFY(killed);
        killed->kill(); // SIGKILL: the lock file stays behind
        QVERIFY(killed->waitForFinished(10000));
        QVERIFY(QFile::exists(lockFile()));

        auto next = startWithoutBus();
        QVERIFY(next);
        QCOMPARE(readAll(lockFile()).split('\n').value(0), QByteArray::number(next->processId()));
        next->terminate();
        QVERIFY(next->waitForFinished(10000));
        QCOMPARE(next->exitCode(), 0);
    }

private:
    static QString xdotool(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral("xdotool"), arguments);
        process.waitForFinished(10000);
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    static QProcessEnvironment environmentWithoutBus()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
        return environment;
    }

    static QString dataFolder()
    {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
            .filePath(QStringLiteral("Ledgewise"));
    }
    static QString historyFile() { return QDir(dataFolder()).filePath(QStringLiteral("clipboard.json")); }
    static QString lockFile() { return QDir(dataFolder()).filePath(QStringLiteral("ledgewise.lock")); }

    static QByteArray readAll(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Another application copies `text`.
    static bool copyToClipboard(const QByteArray &text)
    {
        QProcess xclip;
        xclip.start(QStringLiteral("xclip"),
            { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i") });
        if (!xclip.waitForStarted())
            return false;
        xclip.write(text);
        xclip.closeWriteChannel();
        return xclip.waitForFinished(5000) && xclip.exitCode() == 0;
    }

    // Ledgewise started with no session bus; returned once its surfaces are on screen.
    std::unique_ptr<QProcess> startWithoutBus()
    {
        auto app = std::make_unique<QProcess>();
        app->setProcessEnvironment(environmentWithoutBus());
        app->setProcessChannelMode(QProcess::ForwardedChannels);
        app->start(executable(), {});
        if (!app->waitForStarted(10000))
            return nullptr;
        const QString pid = QString::number(app->processId());
        const bool shown = QTest::qWaitFor(
            [&] {
                return !xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                                    pid, QStringLiteral("--name"), QStringLiteral("Ledgewise left surface") })
                            .isEmpty();
            },
            15000);
        if (!shown) {
            app->kill();
            app->waitForFinished();
            return nullptr;
        }
        return app;
    }

    void startApp()
    {
        m_app = std::make_unique<QProcess>();
        m_app->setProcessChannelMode(QProcess::ForwardedChannels);
        m_app->start(executable(), {});
        QVERIFY(m_app->waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(instanceRunning(), 10000);
    }

    std::unique_ptr<QProcess> m_app;
    static inline qint64 m_pid = 0;
};

QTEST_GUILESS_MAIN(TestLedgewiseProcess)
#include "test_ledgewise_process.moc"
