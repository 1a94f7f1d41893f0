// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drag_catcher.h"

#include <QBuffer>
#include <QMimeData>
#include <QTest>
#include <QWindow>

using namespace ledgewise;

namespace {

class RecordingHandler final : public QObject, public DragDestinationHandling
{
public:
    void dragDidEnter(std::shared_ptr<const DropPayload> payload) override
    {
        log << QStringLiteral("enter ") + payload->summary();
        entered = payload;
    }
    void dragDidExit() override { log << QStringLiteral("exit"); }
    void dragDidDrop(std::shared_ptr<const DropPayload> payload) override
    {
        log << QStringLiteral("drop ") + payload->summary();
        dropped = payload;
    }
    QStringList log;
    std::shared_ptr<const DropPayload> entered;
    std::shared_ptr<const DropPayload> dropped;
};

// A surface's window of 76 x 28 with the catcher installed, driven by the drag events
// the window system sends; remembers whether each event was accepted with copy.
class DraggedWindow
{
public:
    explicit DraggedWindow(DragCatcher &catcher)
    {
        window.resize(76, 28);
        window.installEventFilter(&catcher);
    }

    bool enter(const QMimeData &data, QPointF at)
    {
        QDragEnterEvent event(at.toPoint(), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        return send(event);
    }
    bool move(const QMimeData &data, QPointF at)
    {
        QDragMoveEvent event(at.toPoint(), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        return send(event);
    }
    bool drop(const QMimeData &data, QPointF at)
    {
        QDropEvent event(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        return send(event);
    }
    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(&window, &event);
    }

    QWindow window;

private:
    bool send(QDropEvent &event)
    {
        event.ignore();
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }
};

// What most cases start from: a catcher with its handler, watching a sleeping-sized window.
struct CatchingWindow {
    DragCatcher catcher;
    RecordingHandler handler;
    DraggedWindow surface { catcher };
    CatchingWindow() { catcher.setHandler(&handler, &handler); }
};

const QPointF topLeftCorner(1, 1);
const QPointF bottomRightCorner(75, 27);
const QPointF centre(38, 14);

} // namespace

class TestDragCatcher : public QObject
{
    Q_OBJECT

private slots:
    void cornersOutsideTheRoundedShapeAreNotTaken()
    {
        DragCatcher catcher;
        const QSizeF bounds(76, 28);
        QCOMPARE(catcher.pillCornerRadius(), 14.0);
        QVERIFY(!catcher.contains(bounds, QPointF(1, 1)));
        QVERIFY(!catcher.contains(bounds, QPointF(75, 27)));
        QVERIFY(catcher.contains(bounds, QPointF(38, 14)));
        catcher.setPillCornerRadius(0);
        QVERIFY(catcher.contains(bounds, QPointF(1, 1)));
        QVERIFY(catcher.contains(bounds, QPointF(75, 27)));
    }

    void textDragEntersAndLeavesOnce()
    {
        DragCatcher catcher;
        RecordingHandler handler;
        catcher.setHandler(&handler, &handler);
        QMimeData data;
        data.setText(QStringLiteral("some text"));
        QVERIFY(catcher.draggingEntered(data));
        QVERIFY(catcher.draggingUpdated(data));
        catcher.draggingExited();
        QCOMPARE(handler.log, QStringList({ "enter some text", "exit" }));
    }

    void unreadableLinkTypeIsRefusedAtEntryAndAtTheDrop()
    {
        DragCatcher catcher;
        RecordingHandler handler;
        catcher.setHandler(&handler, &handler);
        QMimeData data;
        data.setData(QStringLiteral("_NETSCAPE_URL"), "https://example.org");
        QVERIFY(!catcher.draggingEntered(data));
        QVERIFY(catcher.draggingUpdated(data)); // lenient while it moves
        QVERIFY(!catcher.prepareForDragOperation(data));
        QVERIFY(!catcher.performDragOperation(data));
        catcher.draggingExited();
        QCOMPARE(handler.log, QStringList({ "exit" }));
    }

    void bigTextIsConvertedOnlyWhenAnActionAsksForIt()
    {
        // A text of many megabytes passes over the surface, is dropped and summarised
        // without being converted whole: that would hold the surface for about 100 ms.
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QByteArray text(50 * 1024 * 1024, 'x');
        text.replace(0, 6, "grüße");
        QMimeData data;
        data.setData(QStringLiteral("text/plain"), text);
        QVERIFY(surface.enter(data, centre));
        QVERIFY(surface.move(data, centre + QPointF(1, 0)));
        QVERIFY(surface.drop(data, centre + QPointF(1, 0)));
        QVERIFY(handler.entered && handler.dropped);
        const QString summary = QStringLiteral("grüße") + QString(995, QLatin1Char('x')) + QChar(0x2026);
        QCOMPARE(handler.log, QStringList({ "enter " + summary, "drop " + summary }));
        QVERIFY(!handler.entered->text.isDecoded());
        QVERIFY(!handler.dropped->text.isDecoded());
        QCOMPARE(handler.dropped->text->toUtf8(), text);
    }

    void completedDropReportsTheDropAndNoExit()
    {
        DragCatcher catcher;
        RecordingHandler handler;
        catcher.setHandler(&handler, &handler);
        QMimeData data;
        data.setUrls(
            { QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt")), QUrl::fromLocalFile(QStringLiteral("/tmp/b.txt")) });
        QVERIFY(catcher.draggingEntered(data));
        QVERIFY(catcher.prepareForDragOperation(data));
        QVERIFY(catcher.performDragOperation(data));
        QCOMPARE(handler.log, QStringList({ "enter 2 files", "drop 2 files" }));
    }

    void dropWithoutHandlerStillAnswersYes()
    {
        DragCatcher catcher;
        QMimeData data;
        data.setText(QStringLiteral("x"));
        QVERIFY(catcher.draggingEntered(data));
        QVERIFY(catcher.performDragOperation(data));
        auto handler = std::make_unique<RecordingHandler>();
        catcher.setHandler(handler.get(), handler.get());
        handler.reset(); // gone: never called again
        QVERIFY(catcher.performDragOperation(data));
    }

    void dragOfNoTypeASurfaceTakesNeverReachesTheCatcher()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setData(QStringLiteral("application/x-unknown"), "bytes");
        QVERIFY(!surface.enter(data, centre));
        QVERIFY(!surface.move(data, centre));
        QVERIFY(!surface.move(data, QPointF(40, 15)));
        surface.leave();
        QVERIFY(!surface.enter(data, centre));
        QVERIFY(!surface.drop(data, centre));
        QCOMPARE(handler.log, QStringList());
    }

    void dragEnteringThroughACornerEntersWhenItReachesTheShape()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setText(QStringLiteral("some text"));
        QVERIFY(!surface.enter(data, topLeftCorner));
        QVERIFY(!surface.move(data, topLeftCorner));
        QCOMPARE(handler.log, QStringList());
        QVERIFY(surface.move(data, centre));
        QCOMPARE(handler.log, QStringList({ "enter some text" }));
        QVERIFY(surface.move(data, QPointF(40, 15)));
        QCOMPARE(handler.log, QStringList({ "enter some text" }));
        surface.leave();
        QCOMPARE(handler.log, QStringList({ "enter some text", "exit" }));
    }

    void dragMovingOutIntoACornerExitsAndComingBackEntersAgain()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setText(QStringLiteral("some text"));
        QVERIFY(surface.enter(data, centre));
        QVERIFY(surface.move(data, centre));
        QVERIFY(!surface.move(data, bottomRightCorner));
        QCOMPARE(handler.log, QStringList({ "enter some text", "exit" }));
        QVERIFY(!surface.move(data, QPointF(75, 26)));
        surface.leave(); // already out of the shape: no second exit
        QCOMPARE(handler.log, QStringList({ "enter some text", "exit" }));

        QVERIFY(!surface.enter(data, bottomRightCorner));
        QVERIFY(surface.move(data, centre));
        QVERIFY(surface.drop(data, centre));
        QCOMPARE(handler.log, QStringList({ "enter some text", "exit", "enter some text", "drop some text" }));
    }

    void dropInACornerIsRefusedAndCountsAsLeaving()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt")) });
        QVERIFY(surface.enter(data, centre));
        QVERIFY(!surface.drop(data, topLeftCorner));
        QCOMPARE(handler.log, QStringList({ "enter a.txt", "exit" }));
    }

    void dropWhereTheDragWasTakenIsKeptAfterTheWindowOpenedUnderIt()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setText(QStringLiteral("some text"));
        // Taken at the sleeping pill's left end.
        const QPointF leftEnd(4, 9);
        QVERIFY(surface.enter(data, leftEnd));
        // The surface opens under a pointer that has not moved: the drop names the same
        // point, now in a corner of the open outline.
        surface.window.resize(268, 340);
        catcher.setPillCornerRadius(24);
        QVERIFY(!catcher.contains(QSizeF(268, 340), leftEnd));
        QVERIFY(surface.drop(data, leftEnd));
        QCOMPARE(handler.log, QStringList({ "enter some text", "drop some text" }));
    }

    void dropWhoseDataCannotBeFetchedKeepsWhatTheDragCarriedIn()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setText(QStringLiteral("some text"));
        QVERIFY(surface.enter(data, centre));
        // The window system hands over the drop, but the other application's data
        // does not arrive this time.
        data.setText(QString());
        QVERIFY(surface.drop(data, centre));
        QCOMPARE(handler.log, QStringList({ "enter some text", "drop some text" }));

        // A drag that never entered the shape has nothing to fall back on.
        RecordingHandler later;
        catcher.setHandler(&later, &later);
        QVERIFY(!surface.enter(data, centre));
        QVERIFY(!surface.drop(data, centre));
        QVERIFY(!later.log.contains(QStringLiteral("drop some text")));
    }

    void unreadableLinkTypeIsLetInLenientlyAndRefusedAtTheDrop()
    {
        CatchingWindow caught;
        auto &[catcher, handler, surface] = caught;
        QMimeData data;
        data.setData(QStringLiteral("_NETSCAPE_URL"), "https://example.org");
        QVERIFY(!surface.enter(data, centre));
        QVERIFY(surface.move(data, QPointF(40, 15))); // lenient while it moves
        QVERIFY(!surface.drop(data, QPointF(40, 15)));
        QCOMPARE(handler.log, QStringList({ "exit" }));
    }

    void emptyDragIsRefused()
    {
        DragCatcher catcher;
        QMimeData data;
        QVERIFY(!catcher.draggingUpdated(data));
        QVERIFY(!catcher.draggingEntered(data));
    }

    void offeredImageIsDecodedOnceAtTheDrop()
    {
        QImage square(40, 30, QImage::Format_ARGB32);
        square.fill(Qt::blue);
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(buffer.open(QIODevice::WriteOnly) && square.save(&buffer, "PNG"));
        QMimeData data;
        data.setData(QStringLiteral("image/png"), png);
        data.setData(QStringLiteral("image/tiff"), png); // a second type, never decoded
        data.setText(QStringLiteral("caption"));

        DragCatcher catcher;
        RecordingHandler handler;
        catcher.setHandler(&handler, &handler);
        DraggedWindow dragged(catcher);
        const int before = DropPayload::imageDecodeCount();
        QVERIFY(dragged.enter(data, centre));
        for (int i = 0; i < 5; ++i)
            QVERIFY(dragged.move(data, centre + QPointF(i, 0)));
        QVERIFY(!dragged.move(data, topLeftCorner)); // out of the shape and in again
        QVERIFY(dragged.move(data, centre));
        QCOMPARE(DropPayload::imageDecodeCount(), before);
        QVERIFY(dragged.drop(data, centre));
        QCOMPARE(DropPayload::imageDecodeCount(), before + 1);
        QCOMPARE(handler.log, QStringList({ "enter Image", "exit", "enter Image", "drop Image" }));
        QCOMPARE(handler.dropped->image->size(), QSize(40, 30));
    }
};

QTEST_MAIN(TestDragCatcher)
#include "test_drag_catcher.moc"
