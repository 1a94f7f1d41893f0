// A real drag from another application onto a surface, on Xvfb. It runs in a process
// of its own: the drag protocol is sensitive to what earlier windows left behind.
#include "app/qml_modules.h"
#include "surfaces/notch_controller.h"
#include "tests/surfaces/surface_test_support.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

class TestSurfaceDrag : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        pointerTo(QPoint(756, 600));
        m_fixture = std::make_unique<SurfaceFixture>();
    }

    void cleanup() { m_fixture.reset(); }

    void realDragFromAnotherApplicationExpandsAndDrops()
    {
        QProcess source;
        dragOntoTheLeftSurface(source, QStringLiteral("dragged from elsewhere"));
        if (QTest::currentTestFailed())
            return;
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QTRY_COMPARE_WITH_TIMEOUT(surfaceLeft->surface()->presentation(), NotchPresentation::expanded, 3000);
        QVERIFY(surfaceLeft->surface()->isReceivingDrop());
        pointerTo(QPoint(120, 60));
        QTest::qWait(150);
        xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
        QTRY_VERIFY(!surfaceLeft->surface()->isReceivingDrop());
        QCOMPARE(surfaceLeft->dropSummary(), QStringLiteral("dragged from elsewhere"));
        screenshot(QStringLiteral("real-drop"));
        source.kill();
        source.waitForFinished();
    }

    void realDragThatEntersAndLeavesLeavesTheSurfaceClosedAndEmpty()
    {
        QProcess source;
        dragOntoTheLeftSurface(source, QStringLiteral("only passing by"));
        if (QTest::currentTestFailed())
            return;
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QTRY_COMPARE_WITH_TIMEOUT(surfaceLeft->surface()->presentation(), NotchPresentation::expanded, 3000);
        QVERIFY(surfaceLeft->surface()->hasDropPayload());
        // Out again, and let go over nothing that takes it.
        for (const QPoint &step : {QPoint(200, 200), QPoint(500, 420), QPoint(900, 700), QPoint(1000, 720)}) {
            pointerTo(step);
            QTest::qWait(120);
        }
        QTRY_COMPARE(surfaceLeft->surface()->presentation(), NotchPresentation::sleeping);
        xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
        QTRY_VERIFY_WITH_TIMEOUT(source.canReadLine() || (source.waitForReadyRead(100) && source.canReadLine()), 10000);
        QCOMPARE(source.readLine().trimmed(), QByteArray("ignored"));
        QVERIFY(!surfaceLeft->surface()->isReceivingDrop());
        QVERIFY(!surfaceLeft->surface()->hasDropPayload());
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 84, 30));
        screenshot(QStringLiteral("drag-passed-by"));
        source.kill();
        source.waitForFinished();
    }

private:
    // Another application offers `text` to drag, and the pointer brings the drag onto
    // the left surface with the button held. The surface is classic and snaps open, so
    // the pointer that brought the drag in stays inside the opened shape (a pill opens
    // into a capsule whose top corners are cut away) and the drag protocol never sees
    // a window in mid-move.
    void dragOntoTheLeftSurface(QProcess &source, const QString &text)
    {
        m_fixture->context->store.update([](Preferences &p) {
            p.style = NotchStyle::classic;
            p.animateInterface = false;
        });
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 84, 30));
        source.start(qEnvironmentVariable("DRAG_SOURCE"), {QStringLiteral("600"), QStringLiteral("500"), text});
        QVERIFY(source.waitForReadyRead(10000));
        QCOMPARE(source.readLine().trimmed(), QByteArray("ready"));
        QTRY_VERIFY(!xGeometry(QStringLiteral("drag source")).isEmpty());

        pointerTo(QPoint(650, 550));
        xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
        // Move in steps, as a hand does, so the drag protocol sees the way in.
        for (const QPoint &step : {QPoint(600, 400), QPoint(400, 200), QPoint(200, 40), QPoint(122, 15), QPoint(123, 16)}) {
            pointerTo(step);
            QTest::qWait(120);
        }
    }

    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    std::unique_ptr<SurfaceFixture> m_fixture;
};

QTEST_MAIN(TestSurfaceDrag)
#include "test_surface_drag.moc"
