// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The running program and the commands a second start gives it: reopening, --settings,
// --toggle and --quit, over the real session bus, with the surfaces read back from the
// X server.

#include "app/preferences.h"
#include "surfaces/notch_layout.h"
#include "tests/support/ledgewise_process.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTest>

#include <memory>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

const QString serviceName = QStringLiteral("org.ledgewise.Ledgewise");

// The test's virtual screen: 1512 × 982, no notch, no top panel.
QRect expectedFrame(NotchSide side, NotchPresentation presentation)
{
    const Rect screen { 0, 0, 1512, 982 };
    const DisplaySnapshot display { screen, screen, {}, {}, 0, 0 };
    return toWindowRect(NotchLayout::frame(side, presentation, Preferences {}, display), 982);
}

bool instanceRunning()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(serviceName);
}

} // namespace

class TestInstanceCommands : public QObject
{
    Q_OBJECT

public slots:
    // The running Ledgewise announces each open-settings request on the bus.
    void settingsRequested() { ++m_settingsRequests; }

private slots:
    void initTestCase()
    {
        QVERIFY(QDBusConnection::sessionBus().connect(QString(), QStringLiteral("/org/ledgewise/Ledgewise"),
            serviceName, QStringLiteral("SettingsRequested"), this, SLOT(settingsRequested())));
    }

    void cleanup()
    {
        if (m_app) {
            m_app->kill();
            m_app->waitForFinished();
            m_app.reset();
        }
        QTRY_VERIFY(!instanceRunning());
        m_settingsRequests = 0;
    }

    void everyCommandWithoutARunningInstanceSaysSoAndFails_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("quit") << QStringList { QStringLiteral("--quit") };
        QTest::newRow("settings") << QStringList { QStringLiteral("--settings") };
        QTest::newRow("toggle left") << QStringList { QStringLiteral("--toggle"), QStringLiteral("left") };
        QTest::newRow("toggle right") << QStringList { QStringLiteral("--toggle=right") };
    }

    void everyCommandWithoutARunningInstanceSaysSoAndFails()
    {
        QFETCH(QStringList, arguments);
        const Finished result = runLedgewise(arguments);
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.err, QByteArray("Ledgewise is not running.\n"));
        QCOMPARE(result.out, QByteArray());
        // Nothing was started by it either.
        QVERIFY(!instanceRunning());
    }

    void aBadSideIsRefusedBeforeAnythingIsAsked()
    {
        startApp();
        const Finished result = runLedgewise({ QStringLiteral("--toggle"), QStringLiteral("top") });
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.err.startsWith("--toggle takes left or right, not 'top'.\n"), result.err.constData());
    }

    void aSecondStartWithNoWindowShowingOpensTheSettings()
    {
        startApp();
        QCOMPARE(m_settingsRequests, 0);
        const Finished second = runLedgewise({});
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(second.out, QByteArray("Ledgewise is already running.\n"));
        QTRY_COMPARE(m_settingsRequests, 1);
        QCOMPARE(m_app->state(), QProcess::Running);
    }

    void theSettingsCommandOpensTheSettings()
    {
        startApp();
        const Finished settings = runLedgewise({ QStringLiteral("--settings") });
        QCOMPARE(settings.exitCode, 0);
        QCOMPARE(settings.out, QByteArray());
        QCOMPARE(settings.err, QByteArray());
        QTRY_COMPARE(m_settingsRequests, 1);
    }

    void theToggleCommandOpensAndClosesASide()
    {
        const QRect leftOpen = expectedFrame(NotchSide::left, NotchPresentation::expanded);
        const QRect leftClosed = expectedFrame(NotchSide::left, NotchPresentation::sleeping);
        const QRect rightOpen = expectedFrame(NotchSide::right, NotchPresentation::expanded);
        const QRect rightClosed = expectedFrame(NotchSide::right, NotchPresentation::sleeping);
        startApp();
        QTRY_COMPARE(surfaceGeometry(QStringLiteral("left")), leftClosed);
        QTRY_COMPARE(surfaceGeometry(QStringLiteral("right")), rightClosed);

        QCOMPARE(runLedgewise({ QStringLiteral("--toggle"), QStringLiteral("left") }).exitCode, 0);
        QTRY_COMPARE(surfaceGeometry(QStringLiteral("left")), leftOpen);
        QCOMPARE(surfaceGeometry(QStringLiteral("right")), rightClosed);

        QCOMPARE(runLedgewise({ QStringLiteral("--toggle"), QStringLiteral("left") }).exitCode, 0);
        QTRY_COMPARE(surfaceGeometry(QStringLiteral("left")), leftClosed);

        QCOMPARE(runLedgewise({ QStringLiteral("--toggle=right") }).exitCode, 0);
        QTRY_COMPARE(surfaceGeometry(QStringLiteral("right")), rightOpen);
        QCOMPARE(surfaceGeometry(QStringLiteral("left")), leftClosed);
        // Toggling is not opening the settings.
        QCOMPARE(m_settingsRequests, 0);
    }

    void theQuitCommandEndsIt()
    {
        startApp();
        QCOMPARE(runLedgewise({ QStringLiteral("--quit") }).exitCode, 0);
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitCode(), 0);
        QVERIFY(!instanceRunning());
    }

private:
    // Ledgewise running, with its surfaces on screen.
    void startApp()
    {
        m_app = std::make_unique<QProcess>();
        m_app->setProcessChannelMode(QProcess::ForwardedChannels);
        QVERIFY(startLedgewise(*m_app));
        QTRY_VERIFY_WITH_TIMEOUT(instanceRunning(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 10000);
    }

    std::unique_ptr<QProcess> m_app;
    int m_settingsRequests = 0;
};

QTEST_GUILESS_MAIN(TestInstanceCommands)
#include "test_instance_commands.moc"
