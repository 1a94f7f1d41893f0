// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Real drags from another application onto a window with the catcher, on Xvfb: the
// window system reports the drag over the whole window, the catcher only over its
// rounded shape.
#include "dragdrop/drag_catcher.h"
#include "tests/support/drag_source_process.h"
#include "tests/support/x11_tools.h"

#include <QTemporaryFile>

#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

class RecordingHandler final : public QObject, public DragDestinationHandling
{
public:
    void dragDidEnter(std::shared_ptr<const DropPayload> payload) override { log << "enter " + payload->summary(); }
    void dragDidExit() override { log << QStringLiteral("exit"); }
    void dragDidDrop(std::shared_ptr<const DropPayload> payload) override { log << "drop " + payload->summary(); }
    QStringList log;
};

class Surface final : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::black); }
};

void pointerTo(const QPoint &point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) });
}

// The surface spans 300..500 x 100..180 with corners of radius 30.
const QPoint topLeftCorner(303, 103);
const QPoint bottomRightCorner(497, 177);
const QPoint centre(400, 140);
const QPoint belowTheSurface(400, 300);

} // namespace

class TestDragCatcherX11 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        pointerTo(QPoint(756, 700));
        m_surface = std::make_unique<Surface>();
        m_surface->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        m_surface->setTitle(QStringLiteral("catcher"));
        m_surface->setGeometry(300, 100, 200, 80);
        m_catcher = std::make_unique<DragCatcher>();
        m_catcher->setPillCornerRadius(30);
        m_catcher->setHandler(&m_handler, &m_handler);
        m_surface->installEventFilter(m_catcher.get());
        m_surface->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_surface.get()));
        m_handler.log.clear();
    }

    void cleanup()
    {
        // A test that failed mid-drag must not leave the button down for the next one.
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        if (m_source.state() != QProcess::NotRunning) {
            m_source.kill();
            m_source.waitForFinished();
        }
        m_surface.reset();
        m_catcher.reset();
    }

    void dragCountsInAndOutWhereItCrossesTheRoundedShape()
    {
        startDrag({ QStringLiteral("dragged text") });
        pointerTo(topLeftCorner);
        QTest::qWait(300); // in the window, not yet in the shape: nothing
        QCOMPARE(m_handler.log, QStringList());
        pointerTo(centre);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter dragged text" }));
        pointerTo(bottomRightCorner);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter dragged text", "exit" }));
        pointerTo(centre);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter dragged text", "exit", "enter dragged text" }));
        QCOMPARE(release(), QByteArray("copy"));
        QTRY_COMPARE(
            m_handler.log, QStringList({ "enter dragged text", "exit", "enter dragged text", "drop dragged text" }));
    }

    void releasedInACornerIsNotADrop()
    {
        startDrag({ QStringLiteral("dragged text") });
        pointerTo(centre);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter dragged text" }));
        pointerTo(topLeftCorner);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter dragged text", "exit" }));
        QCOMPARE(release(), QByteArray("ignored"));
        QCOMPARE(m_handler.log, QStringList({ "enter dragged text", "exit" }));
    }

    void dragOfATypeNoSurfaceTakesIsNeverHeardOf()
    {
        startDrag({ QStringLiteral("opaque bytes"), QStringLiteral("application/x-unknown") });
        pointerTo(centre);
        QTest::qWait(300);
        pointerTo(belowTheSurface);
        QTest::qWait(300);
        pointerTo(centre);
        QTest::qWait(300);
        QCOMPARE(release(), QByteArray("ignored"));
        QCOMPARE(m_handler.log, QStringList());
    }

    void dragOfRelativeFileLinksIsNeverFiles()
    {
        // Read against the working folder, "file:." would be whatever folder this
        // process runs in. The list holds no file; what is left is the text X offers
        // for any link list (shown as it is, saved as Dropped.txt).
        const QString list = QStringLiteral("file:.\r\nfile:..\r\nfile:notes.txt\r\n");
        startDrag({ list, QStringLiteral("text/uri-list") });
        pointerTo(centre);
        const QString asText = QStringLiteral("file:.\nfile:..\nfile:notes.txt\n");
        QTRY_COMPARE(m_handler.log, QStringList({ "enter " + asText }));
        QCOMPARE(release(), QByteArray("copy"));
        QTRY_COMPARE(m_handler.log, QStringList({ "enter " + asText, "drop " + asText }));
    }

    void dragOfAnAbsoluteFileLinkAmongRelativeOnesKeepsOnlyIt()
    {
        startDrag({ QStringLiteral("file:.\r\nfile:///tmp/report.pdf\r\n"), QStringLiteral("text/uri-list") });
        pointerTo(centre);
        QTRY_COMPARE(m_handler.log, QStringList({ "enter report.pdf" }));
        QCOMPARE(release(), QByteArray("copy"));
        QTRY_COMPARE(m_handler.log, QStringList({ "enter report.pdf", "drop report.pdf" }));
    }

    void dropOfTenThousandFilesFromAGtkApplicationIsTaken()
    {
        // A file manager's selection of a whole folder: 10,000 links with a long
        // name among them and one with line breaks.
        QTemporaryFile list;
        QVERIFY(list.open());
        for (int i = 0; i < 10000; ++i) {
            QUrl file
                = QUrl::fromLocalFile(QStringLiteral("/home/me/photos/IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
            if (i == 1)
                file = QUrl::fromLocalFile(QStringLiteral("/home/me/") + QString(4000, QLatin1Char('n')));
            if (i == 2)
                file = QUrl::fromLocalFile(QStringLiteral("/home/me/two\nlines.txt"));
            list.write(file.toEncoded() + '\n');
        }
        list.flush();
        DragSourceProcess source(DragSourceProcess::Toolkit::gtk, QPoint(600, 500), QStringLiteral("photos"),
            QLatin1Char('@') + list.fileName());
        QVERIFY(source.isReady());
        source.dragThrough({ QPoint(600, 450), QPoint(500, 350), QPoint(300, 300), QPoint(280, 120), centre });
        QTRY_COMPARE_WITH_TIMEOUT(m_handler.log, QStringList({ "enter 10000 files" }), 10000);
        QCOMPARE(source.release(), QByteArray("copy"));
        QTRY_COMPARE_WITH_TIMEOUT(m_handler.log, QStringList({ "enter 10000 files", "drop 10000 files" }), 10000);
    }

private:
    // Presses on another application's window and carries its drag, in steps as a hand
    // does, to just below the surface.
    void startDrag(const QStringList &what)
    {
        m_source.start(qEnvironmentVariable("DRAG_SOURCE"), QStringList({ "600", "500" }) + what);
        QVERIFY(m_source.waitForReadyRead(10000));
        QCOMPARE(m_source.readLine().trimmed(), QByteArray("ready"));
        QTRY_VERIFY(
            !xdotool({ QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("drag source") }).isEmpty());
        pointerTo(QPoint(650, 550));
        xdotool({ QStringLiteral("mousedown"), QStringLiteral("1") });
        for (const QPoint &step : { QPoint(600, 450), QPoint(500, 350), QPoint(300, 300), QPoint(280, 120) }) {
            pointerTo(step);
            QTest::qWait(120);
        }
    }

    // Lets go of the mouse; how the other application saw its drag end.
    QByteArray release()
    {
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        if (!QTest::qWaitFor([this] { return m_source.canReadLine(); }, 10000))
            return "<the drag did not end>";
        return m_source.readLine().trimmed();
    }

    RecordingHandler m_handler;
    std::unique_ptr<Surface> m_surface;
    std::unique_ptr<DragCatcher> m_catcher;
    QProcess m_source;
};

QTEST_MAIN(TestDragCatcherX11)
#include "test_drag_catcher_x11.moc"
