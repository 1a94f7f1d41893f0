// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A real drag from another application onto a surface, on Xvfb. It runs in a process
// of its own: the drag protocol is sensitive to what earlier windows left behind.
#include "app/qml_modules.h"
#include "surfaces/notch_controller.h"
#include "tests/support/drag_source_process.h"
#include "tests/surfaces/surface_test_support.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

enum class Release { whereItEntered, deeper, afterACancelledDrag };

// The sleeping left pill spans 80..156 x 0..28. A drag comes in from below on the left
// or from below the middle, as a hand brings it from a window lower on the screen.
struct Entry {
    QPoint before;
    QPoint at;
};
const Entry entries[] = { { QPoint(60, 60), QPoint(84, 9) }, { QPoint(120, 70), QPoint(118, 14) } };

} // namespace

Q_DECLARE_METATYPE(Release)
Q_DECLARE_METATYPE(DragSourceProcess::Toolkit)

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
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
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
        for (const QPoint &step : { QPoint(200, 200), QPoint(500, 420), QPoint(900, 700), QPoint(1000, 720) }) {
            pointerTo(step);
            QTest::qWait(120);
        }
        QTRY_COMPARE(surfaceLeft->surface()->presentation(), NotchPresentation::sleeping);
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        QTRY_VERIFY_WITH_TIMEOUT(source.canReadLine() || (source.waitForReadyRead(100) && source.canReadLine()), 10000);
        QCOMPARE(source.readLine().trimmed(), QByteArray("ignored"));
        QVERIFY(!surfaceLeft->surface()->isReceivingDrop());
        QVERIFY(!surfaceLeft->surface()->hasDropPayload());
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 84, 30));
        screenshot(QStringLiteral("drag-passed-by"));
        source.kill();
        source.waitForFinished();
    }

    void dropIsKept_data()
    {
        QTest::addColumn<DragSourceProcess::Toolkit>("toolkit");
        QTest::addColumn<Release>("release");
        using Toolkit = DragSourceProcess::Toolkit;
        for (const auto &[toolkit, name] : { std::pair(Toolkit::gtk, "gtk"), std::pair(Toolkit::qt, "qt") }) {
            QTest::addRow("%s, released where it entered", name) << toolkit << Release::whereItEntered;
            QTest::addRow("%s, released deeper", name) << toolkit << Release::deeper;
            QTest::addRow("%s, after a cancelled drag", name) << toolkit << Release::afterACancelledDrag;
        }
    }

    // The default surface, a pill that opens with its animation, takes a drop wherever
    // the user lets go inside it: where the drag came in (the window has grown under a
    // pointer that has not moved since), deeper in the open panel, or after another drag
    // that came in, went out again and was let go elsewhere. Ten rounds each.
    void dropIsKept()
    {
        QFETCH(DragSourceProcess::Toolkit, toolkit);
        QFETCH(Release, release);
        const bool gtk = toolkit == DragSourceProcess::Toolkit::gtk;
        const QString expectedSummary = gtk ? QStringLiteral("example.org") : QStringLiteral("a kept drop");
        DragSourceProcess source(
            toolkit, QPoint(600, 500), QStringLiteral("a kept drop"), QStringLiteral("https://example.org/kept"));
        QVERIFY(source.isReady());
        m_fixture->context->store.update([](Preferences &p) {
            p.style = NotchStyle::pill;
            p.animateInterface = true;
        });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QTRY_COMPARE_WITH_TIMEOUT(xGeometry(left), QRect(80, 0, 76, 28), 5000);

        for (int round = 0; round < 10; ++round) {
            const Entry &entry = entries[round % 2];
            const auto where = [&] {
                return QStringLiteral("round %1, entered at %2,%3").arg(round).arg(entry.at.x()).arg(entry.at.y());
            };
            if (release == Release::afterACancelledDrag) {
                source.dragThrough({ QPoint(500, 400), QPoint(300, 200), entry.before, entry.at });
                QTRY_VERIFY2_WITH_TIMEOUT(
                    surfaceLeft->surface()->presentation() == NotchPresentation::expanded, qPrintable(where()), 5000);
                // Out again and let go at once, while the surface closes.
                DragSourceProcess::moveThrough({ QPoint(400, 420), QPoint(700, 600), QPoint(900, 700) }, 60);
                QCOMPARE(source.release(), QByteArray("ignored"));
                QVERIFY2(!surfaceLeft->surface()->hasDropPayload(), qPrintable(where()));
            }

            source.dragThrough({ QPoint(500, 400), QPoint(300, 200), entry.before, entry.at });
            QTRY_VERIFY2_WITH_TIMEOUT(
                surfaceLeft->surface()->presentation() == NotchPresentation::expanded, qPrintable(where()), 5000);
            // The panel opens all the way under the pointer before the user lets go.
            QTRY_VERIFY2_WITH_TIMEOUT(xGeometry(left) == QRect(80, 0, 268, 340), qPrintable(where()), 5000);
            if (release == Release::deeper)
                DragSourceProcess::moveThrough({ entry.at + QPoint(0, 20), entry.at + QPoint(0, 40) });
            const QByteArray outcome = source.release();
            QVERIFY2(outcome == "copy",
                qPrintable(where() + QStringLiteral(": the source saw ") + QString::fromLatin1(outcome)));
            // Dropped: the drop's actions show in the open panel.
            QTRY_VERIFY2_WITH_TIMEOUT(!surfaceLeft->surface()->isReceivingDrop(), qPrintable(where()), 5000);
            QVERIFY2(surfaceLeft->surface()->hasDropPayload(), qPrintable(where()));
            QCOMPARE(surfaceLeft->surface()->presentation(), NotchPresentation::expanded);
            QCOMPARE(surfaceLeft->dropSummary(), expectedSummary);

            // Away, and the surface closes for the next round.
            DragSourceProcess::moveTo(QPoint(756, 700));
            surfaceLeft->behaviour().collapse();
            QTRY_VERIFY2_WITH_TIMEOUT(xGeometry(left) == QRect(80, 0, 76, 28), qPrintable(where()), 5000);
        }
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
        source.start(qEnvironmentVariable("DRAG_SOURCE"), { QStringLiteral("600"), QStringLiteral("500"), text });
        QVERIFY(source.waitForReadyRead(10000));
        QCOMPARE(source.readLine().trimmed(), QByteArray("ready"));
        QTRY_VERIFY(!xGeometry(QStringLiteral("drag source")).isEmpty());

        pointerTo(QPoint(650, 550));
        xdotool({ QStringLiteral("mousedown"), QStringLiteral("1") });
        // Move in steps, as a hand does, so the drag protocol sees the way in.
        for (const QPoint &step :
            { QPoint(600, 400), QPoint(400, 200), QPoint(200, 40), QPoint(122, 15), QPoint(123, 16) }) {
            pointerTo(step);
            QTest::qWait(120);
        }
    }

    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    std::unique_ptr<SurfaceFixture> m_fixture;
};

QTEST_MAIN(TestSurfaceDrag)
#include "test_surface_drag.moc"
