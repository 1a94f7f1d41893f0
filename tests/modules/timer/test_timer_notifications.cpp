// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_session.h"
#include "platform/dbus/freedesktop_notifications.h"
#include "platform/x11/system_bell.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusError>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;

namespace {

// A notification server on the private session bus that remembers what it was asked,
// and can be told to answer some calls with an error.
class RecordingNotificationServer : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        QString appName;
        uint replacesId;
        QString summary;
        QString body;
        QVariantMap hints;
        qint64 atMs;
    };

    explicit RecordingNotificationServer(QElapsedTimer &clock)
        : m_clock(clock)
    { }

public slots:
    QString GetServerInformation(QString &vendor, QString &version, QString &specVersion)
    {
        ++serverInformationCalls;
        if (failServerInformation) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("notifications are turned off"));
            return {};
        }
        vendor = QStringLiteral("Ledgewise tests");
        version = QStringLiteral("1");
        specVersion = QStringLiteral("1.2");
        return QStringLiteral("recording-server");
    }
    QStringList GetCapabilities() { return { QStringLiteral("body"), QStringLiteral("sound") }; }
    uint Notify(const QString &appName, uint replacesId, const QString &, const QString &summary, const QString &body,
        const QStringList &, const QVariantMap &hints, int)
    {
        shown.append({ appName, replacesId, summary, body, hints, m_clock.elapsed() });
        emit notified();
        if (failNotify) {
            sendErrorReply(QDBusError::Failed, QStringLiteral("cannot show notifications now"));
            return 0;
        }
        return replacesId ? replacesId : ++m_lastId;
    }
    void CloseNotification(uint) { }

signals:
    void notified();

public:
    QList<Shown> shown;
    int serverInformationCalls = 0;
    bool failServerInformation = false;
    bool failNotify = false;

private:
    QElapsedTimer &m_clock;
    uint m_lastId = 0;
};

class CountingBell final : public SystemBell
{
public:
    void ring() override { ++rings; }
    int rings = 0;
};

} // namespace

class TestTimerNotifications : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_clock.start();
        m_bell.rings = 0;
        m_notifications = std::make_unique<FreedesktopNotifications>();
        m_session = std::make_unique<TimerSession>(m_notifications.get(), &m_bell);
    }

    void cleanup()
    {
        m_session.reset();
        m_notifications.reset();
        if (m_server) {
            m_serverBus->unregisterObject(QStringLiteral("/org/freedesktop/Notifications"));
            m_serverBus->unregisterService(QStringLiteral("org.freedesktop.Notifications"));
            QDBusConnection::disconnectFromBus(QStringLiteral("notification-server"));
            m_server.reset();
            m_serverBus.reset();
        }
    }

    void withoutAServiceTheCountdownStillRunsAndBeeps()
    {
        m_session->start(1);
        QTRY_VERIFY_WITH_TIMEOUT(!m_session->isRunning(), 4000);
        QCOMPARE(m_bell.rings, 1);
        QTest::qWait(300); // an answer from the bus may still be on its way: nothing is scheduled
        QVERIFY(!m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));
    }

    void theDesktopIsToldWhenTheCountdownEnds()
    {
        startServer();
        const qint64 started = m_clock.elapsed();
        m_session->start(1);
        QSignalSpy notified(m_server.get(), &RecordingNotificationServer::notified);
        QVERIFY(notified.wait(5000));
        QCOMPARE(m_server->shown.size(), 1);
        const auto &shown = m_server->shown.constFirst();
        QCOMPARE(shown.appName, QStringLiteral("Ledgewise"));
        QCOMPARE(shown.summary, QStringLiteral("Timer finished"));
        QCOMPARE(shown.body, QStringLiteral("Ledgewise"));
        // The desktop's own notification sound: no particular sound named, none suppressed.
        QVERIFY(!shown.hints.contains(QStringLiteral("sound-name")));
        QVERIFY(!shown.hints.contains(QStringLiteral("sound-file")));
        QCOMPARE(shown.hints.value(QStringLiteral("suppress-sound")), QVariant(false));
        QCOMPARE(shown.replacesId, 0u);
        QVERIFY(shown.atMs - started >= 950);
        QTRY_COMPARE(m_bell.rings, 1);
    }

    void cancelWithdrawsThePendingNotification()
    {
        startServer();
        m_session->start(1);
        QTRY_VERIFY(m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));
        m_session->cancel();
        QVERIFY(!m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));
        QSignalSpy notified(m_server.get(), &RecordingNotificationServer::notified);
        QVERIFY(!notified.wait(1800));
        QCOMPARE(m_bell.rings, 0);
    }

    void restartReplacesThePendingNotification()
    {
        startServer();
        m_session->start(1);
        QTRY_VERIFY(m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));
        m_session->start(2);
        QSignalSpy notified(m_server.get(), &RecordingNotificationServer::notified);
        QVERIFY(notified.wait(5000));
        QVERIFY(!notified.wait(1500));
        QCOMPARE(m_server->shown.size(), 1);

        // The next countdown's notification takes the place of the one shown.
        m_session->start(1);
        QVERIFY(notified.wait(5000));
        QCOMPARE(m_server->shown.size(), 2);
        QCOMPARE(m_server->shown[1].replacesId, 1u);
    }

    void serviceRefusingServerInformationMeansNoNotification()
    {
        startServer();
        m_server->failServerInformation = true;
        QSignalSpy notified(m_server.get(), &RecordingNotificationServer::notified);
        m_session->start(1);
        QTRY_COMPARE(m_server->serverInformationCalls, 1);
        QVERIFY(!m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));
        QTRY_VERIFY_WITH_TIMEOUT(!m_session->isRunning(), 4000);
        QCOMPARE(m_bell.rings, 1);
        QVERIFY(!notified.wait(1500)); // past the notification's time: nothing shown
        QVERIFY(m_server->shown.isEmpty());
    }

    void errorFromShowingTheNotificationIsIgnored()
    {
        startServer();
        m_server->failNotify = true;
        QSignalSpy notified(m_server.get(), &RecordingNotificationServer::notified);
        m_session->start(1);
        QVERIFY(notified.wait(5000));
        QTRY_COMPARE(m_bell.rings, 1);
        QVERIFY(!m_session->isRunning());
        QVERIFY(!m_notifications->hasPending(QStringLiteral("ledgewise.timer.complete")));

        // The next countdown is told as usual; the refused one left nothing to replace.
        m_server->failNotify = false;
        m_session->start(1);
        QVERIFY(notified.wait(5000));
        QCOMPARE(m_server->shown.size(), 2);
        QCOMPARE(m_server->shown[1].replacesId, 0u);
        QCOMPARE(m_server->shown[1].summary, QStringLiteral("Timer finished"));
        QTRY_COMPARE(m_bell.rings, 2);
    }

private:
    void startServer()
    {
        m_serverBus = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("notification-server")));
        QVERIFY(m_serverBus->isConnected());
        m_server = std::make_unique<RecordingNotificationServer>(m_clock);
        QVERIFY(m_serverBus->registerObject(QStringLiteral("/org/freedesktop/Notifications"), m_server.get(),
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        QVERIFY(m_serverBus->registerService(QStringLiteral("org.freedesktop.Notifications")));
    }

    QElapsedTimer m_clock;
    CountingBell m_bell;
    std::unique_ptr<FreedesktopNotifications> m_notifications;
    std::unique_ptr<TimerSession> m_session;
    std::unique_ptr<QDBusConnection> m_serverBus;
    std::unique_ptr<RecordingNotificationServer> m_server;
};

QTEST_GUILESS_MAIN(TestTimerNotifications)
#include "test_timer_notifications.moc"
