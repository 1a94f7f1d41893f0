// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Surfaces on two displays: a 1512 x 982 laptop panel and a 1488 x 1000 monitor to its
// right, made as RandR monitors on one Xvfb screen.
#include "app/qml_modules.h"
#include "surfaces/notch_controller.h"
#include "tests/surfaces/surface_test_support.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

class TestSurfaceDisplays : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        // logind's part, played on the private bus: the surfaces listen for waking on
        // the "system" bus, which for this test is that bus.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        m_logind = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("logind")));
        QVERIFY(m_logind->registerService(QStringLiteral("org.freedesktop.login1")));
    }

    void init() { m_fixture = std::make_unique<SurfaceFixture>(); }

    void cleanup()
    {
        screenshot(QString::fromLatin1(QTest::currentTestFunction()));
        m_fixture.reset();
    }

    void cleanupTestCase()
    {
        m_logind.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("logind"));
    }

    void everyDisplayGetsSurfacesWhenExternalMonitorsAreOn()
    {
        pointerTo(QPoint(700, 500));
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
        QList<QRect> frames;
        for (const auto &controller : m_fixture->controller->controllers())
            frames << controller->frameInScreen();
        QVERIFY(frames.contains(QRect(80, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 - 80 - 76, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 + 80, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 + 1488 - 80 - 76, 0, 76, 28)));
    }

    void withTheSwitchOffOnlyThePrimaryAndThePointersDisplay()
    {
        m_fixture->context->store.update([](Preferences &p) { p.showOnExternalMonitors = false; });
        QScreen *primary = QGuiApplication::primaryScreen();
        QScreen *other = QGuiApplication::screens().first() == primary ? QGuiApplication::screens().last()
                                                                       : QGuiApplication::screens().first();
        pointerTo(primary->geometry().center());
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(2));
        for (const auto &controller : m_fixture->controller->controllers())
            QVERIFY(primary->geometry().contains(controller->frameInScreen()));

        pointerTo(other->geometry().center());
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));

        // The switch itself rebuilds.
        m_fixture->context->store.update([](Preferences &p) { p.showOnExternalMonitors = true; });
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
    }

    void toggleOpensTheSurfaceNearestThePointer()
    {
        pointerTo(QPoint(1512 + 300, 600));
        m_fixture->controller->rebuild(false);
        m_fixture->controller->toggle(NotchSide::left);
        for (const auto &controller : m_fixture->controller->controllers()) {
            const bool nearest = controller->side() == NotchSide::left && controller->display().frame.minX() == 1512;
            QCOMPARE(controller->surface()->presentation(),
                nearest ? NotchPresentation::expanded : NotchPresentation::sleeping);
        }
    }

    void withTheSwitchOffTheDisplayWithTheActiveWindowGetsSurfaces()
    {
        m_fixture->context->store.update([](Preferences &p) { p.showOnExternalMonitors = false; });
        pointerTo(QPoint(700, 500)); // on the primary display
        {
            // Keyboard focus is in a window of another application on the monitor.
            HelperWindow focused(QRect(1512 + 600, 400, 200, 150), { QStringLiteral("--active") });
            QVERIFY(focused.isReady());
            m_fixture->controller->rebuild(false);
            QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
            QCOMPARE(onDisplayAt(1512), 2);
        }
        {
            // The active window on the primary display wins over the pointer elsewhere.
            HelperWindow focused(QRect(600, 400, 200, 150), { QStringLiteral("--active") });
            QVERIFY(focused.isReady());
            pointerTo(QPoint(1512 + 700, 500));
            m_fixture->controller->rebuild(false);
            QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(2));
            QCOMPARE(onDisplayAt(0), 2);
        }
        // The active window is gone: the pointer's display is the focused one.
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
    }

    void wakingFromSleepRebuildsEverySurface()
    {
        pointerTo(QPoint(700, 500));
        m_fixture->controller->rebuild(false);
        const QList<WId> before = windowIds();
        QSignalSpy rebuilt(m_fixture->controller.get(), &NotchController::rebuilt);
        prepareForSleep(true); // going to sleep changes nothing
        QTest::qWait(300);
        QCOMPARE(rebuilt.count(), 0);
        // The listener may still be subscribing: say it again until it is heard.
        QTRY_VERIFY_WITH_TIMEOUT((prepareForSleep(false), rebuilt.count() > 0), 5000);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
        for (WId id : windowIds())
            QVERIFY(!before.contains(id));
    }

    void removingAndAddingAMonitorRebuilds()
    {
        pointerTo(QPoint(700, 500));
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
        const QList<WId> before = windowIds();
        xrandr({ QStringLiteral("--delmonitor"), QStringLiteral("monitor-1") });
        QTRY_COMPARE(QGuiApplication::screens().size(), 1);
        QTRY_COMPARE(m_fixture->controller->controllers().size(), std::size_t(2));
        for (WId id : windowIds())
            QVERIFY(!before.contains(id));
        xrandr({ QStringLiteral("--setmonitor"), QStringLiteral("monitor-1"),
            QStringLiteral("1488/300x1000/200+1512+0"), QStringLiteral("none") });
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
        QTRY_COMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
        QCOMPARE(onDisplayAt(1512), 2);
    }

private:
    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    int onDisplayAt(double minX) const
    {
        int count = 0;
        for (const auto &controller : m_fixture->controller->controllers())
            count += controller->display().frame.minX() == minX;
        return count;
    }

    QList<WId> windowIds() const
    {
        QList<WId> ids;
        for (const auto &controller : m_fixture->controller->controllers())
            ids << controller->window()->winId();
        return ids;
    }

    void prepareForSleep(bool sleeping)
    {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
        signal << sleeping;
        m_logind->send(signal);
    }

    static void xrandr(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral("xrandr"), arguments);
        process.waitForFinished(10000);
    }

    std::unique_ptr<QDBusConnection> m_logind;

    std::unique_ptr<SurfaceFixture> m_fixture;
};

QTEST_MAIN(TestSurfaceDisplays)
#include "test_surface_displays.moc"
