// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A running countdown on real surface windows (Xvfb): what happens on each of its ticks.
// The program should wake once a second for it: one timer, every surface refreshed in
// that one turn, and a window repainted only when what it shows changed.
#include "platform/x11/repaint_pacing.h"
#include "tests/support/quick_item_search.h"
#include "tests/surfaces/surface_test_support.h"

#include <QAbstractAnimation>
#include <QGuiApplication>
#include <QHash>
#include <QProcess>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QTimerEvent>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// Every timer event the main thread delivers, by receiver: an application-wide filter
// sees them all, whoever started the timer.
class TimerEventCounter : public QObject
{
public:
    TimerEventCounter() { qApp->installEventFilter(this); }
    ~TimerEventCounter() override { qApp->removeEventFilter(this); }

    QHash<QObject *, int> byReceiver;
    // And the repaints asked of each window.
    QHash<QObject *, int> updateRequests;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer)
            ++byReceiver[watched];
        else if (event->type() == QEvent::UpdateRequest)
            ++updateRequests[watched];
        return false;
    }
};

// What both surfaces and the session showed at one tick, read right after the
// surfaces' own refresh in that same turn.
struct TickRecord {
    QString session;
    QString left;
    QString right;
};

} // namespace

class TestCountdownTicks : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        pointerTo(QPoint(756, 600));
        m_fixture = std::make_unique<SurfaceFixture>();
        m_fixture->context->store.update([](Preferences &p) { p.animateInterface = false; });
        m_fixture->controller->rebuild(false);
        QTRY_VERIFY_WITH_TIMEOUT(!xGeometry(left).isEmpty() && !xGeometry(right).isEmpty(), 10000);
        // Connected after the timer module's own listener: it runs once the module's
        // glance, and with it every surface, has taken the tick.
        connect(&m_fixture->context->timer, &TimerSession::ticked, this, [this] {
            m_ticks.append({ m_fixture->context->timer.remainingText(), glanceText(NotchSide::left),
                glanceText(NotchSide::right) });
        });
    }

    void cleanup()
    {
        screenshot(QStringLiteral("countdown-") + QString::fromLatin1(QTest::currentTestFunction()));
        m_fixture->context->timer.cancel();
        m_fixture.reset();
        m_ticks.clear();
    }

    void eachTickRefreshesEverySurfaceInThatSameTurn()
    {
        m_fixture->context->timer.start(300);
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= 4, 15000);
        QCOMPARE(m_ticks.first().session, QStringLiteral("5:00"));
        for (int i = 0; i < m_ticks.size(); ++i) {
            QCOMPARE(m_ticks[i].left, m_ticks[i].session);
            QCOMPARE(m_ticks[i].right, m_ticks[i].session);
            // Each tick falls just after the clock text changed: a new text every time.
            if (i > 0)
                QVERIFY2(m_ticks[i].session != m_ticks[i - 1].session, qPrintable(m_ticks[i].session));
        }
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::active);
        QCOMPARE(surface(NotchSide::right)->surface()->presentation(), NotchPresentation::active);
    }

    void theCountdownsTickIsTheOnlyTimerThatRuns()
    {
        m_fixture->context->timer.start(300);
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= 2 && settled(), 15000);
        TimerEventCounter counter;
        const qsizetype before = m_ticks.size();
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= before + 3, 15000);
        const int ticks = int(m_ticks.size() - before);

        QStringList others;
        int otherEvents = 0;
        for (auto it = counter.byReceiver.cbegin(); it != counter.byReceiver.cend(); ++it) {
            // A window's timer is its repaint request, at most one per tick.
            if (it.key() == surface(NotchSide::left)->window() || it.key() == surface(NotchSide::right)->window()) {
                QVERIFY2(it.value() <= ticks + 1, qPrintable(QString::number(it.value())));
                continue;
            }
            others << QStringLiteral("%1 \"%2\" %3 times")
                          .arg(QString::fromLatin1(it.key()->metaObject()->className()), it.key()->objectName())
                          .arg(it.value());
            otherEvents = it.value();
        }
        // One timer besides the repaints, the countdown's: one event for each tick (the
        // observation may start or end between a tick's timer and its refresh).
        QVERIFY2(others.size() == 1, qPrintable(others.join(QStringLiteral("; "))));
        QVERIFY2(
            qAbs(otherEvents - ticks) <= 1, qPrintable(QStringLiteral("%1 for %2 ticks").arg(otherEvents).arg(ticks)));
        // Both active surfaces show the new text: each is repainted once a tick.
        for (NotchSide side : { NotchSide::left, NotchSide::right }) {
            const int repaints = counter.updateRequests.value(surface(side)->window());
            QVERIFY2(repaints >= ticks - 1 && repaints <= ticks + 1,
                qPrintable(QStringLiteral("%1 repaints in %2 ticks").arg(repaints).arg(ticks)));
        }
    }

    void aSurfaceThatShowsNoCountdownTakesNoNewFrame()
    {
        // Open, the right surface shows its modules, not the countdown.
        m_fixture->controller->toggle(NotchSide::right);
        QTRY_COMPARE_WITH_TIMEOUT(xGeometry(right).size(), QSize(268, 340), 10000);
        m_fixture->context->timer.start(300);
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= 2 && settled(), 15000);
        QCOMPARE(surface(NotchSide::right)->surface()->presentation(), NotchPresentation::expanded);

        QQuickView *openWindow = surface(NotchSide::right)->window();
        QQuickView *activeWindow = surface(NotchSide::left)->window();
        QSignalSpy openFrames(openWindow, &QQuickWindow::frameSwapped);
        QSignalSpy openRenders(openWindow, &QQuickWindow::afterRendering);
        QSignalSpy activeFrames(activeWindow, &QQuickWindow::frameSwapped);
        const qsizetype before = m_ticks.size();
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= before + 3, 15000);
        const int ticks = int(m_ticks.size() - before);
        // The counting works: the active surface, whose clock moves, took about a frame
        // a tick (the last tick's may still be on its way).
        QVERIFY2(activeFrames.count() >= ticks - 1 && activeFrames.count() <= ticks + 1,
            qPrintable(QStringLiteral("%1 frames in %2 ticks").arg(activeFrames.count()).arg(ticks)));
        QCOMPARE(openRenders.count(), 0);
        QCOMPARE(openFrames.count(), 0);
    }

    void theOpenTimerPanelTakesAFrameATick()
    {
        m_fixture->context->store.update([](Preferences &p) { p.leftModuleIDs = { ModuleID::timer }; });
        m_fixture->controller->toggle(NotchSide::left);
        QTRY_COMPARE_WITH_TIMEOUT(xGeometry(left).size(), QSize(268, 340), 10000);
        m_fixture->context->timer.start(300);
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= 2 && settled(), 15000);
        QQuickItem *clock = findClock();
        QVERIFY(clock);
        QSignalSpy frames(surface(NotchSide::left)->window(), &QQuickWindow::frameSwapped);
        const qsizetype before = m_ticks.size();
        QTRY_VERIFY_WITH_TIMEOUT(m_ticks.size() >= before + 3, 15000);
        const int ticks = int(m_ticks.size() - before);
        QCOMPARE(clock->property("text").toString(), m_fixture->context->timer.remainingText());
        QVERIFY2(frames.count() >= ticks - 1 && frames.count() <= ticks + 1,
            qPrintable(QStringLiteral("%1 frames in %2 ticks").arg(frames.count()).arg(ticks)));
    }

    void programsStartedAfterwardsDoNotInheritThePacing()
    {
        QProcess env;
        env.start(QStringLiteral("env"), {});
        QVERIFY(env.waitForFinished(10000));
        const QByteArray variables = env.readAllStandardOutput();
        QVERIFY(!variables.isEmpty());
        QVERIFY(!variables.contains("QT_XCB_NO_MITSHM"));
        QVERIFY(!variables.contains("QT_QPA_UPDATE_IDLE_TIME"));
    }

private:
    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    QString glanceText(NotchSide side) const
    {
        NotchWindowController *controller = surface(side);
        return controller ? controller->surface()->glanceText() : QString();
    }

    // No surface moving or fading: whatever repaints now is the countdown's doing.
    bool settled() const
    {
        for (const auto &controller : m_fixture->controller->controllers()) {
            if (controller->moveAnimation().state() != QAbstractAnimation::Stopped
                || controller->fadeAnimation().state() != QAbstractAnimation::Stopped)
                return false;
        }
        return true;
    }

    QQuickItem *findClock() const
    {
        QQuickItem *root = surface(NotchSide::left)->window()->rootObject();
        return root ? findItem(root, QStringLiteral("clock")) : nullptr;
    }

    std::unique_ptr<SurfaceFixture> m_fixture;
    QList<TickRecord> m_ticks;
};

int main(int argc, char *argv[])
{
    // Paced as Ledgewise paces its own repaints.
    paceRepaints();
    QGuiApplication app(argc, argv);
    forgetRepaintPacing();
    TestCountdownTicks test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "test_countdown_ticks.moc"
