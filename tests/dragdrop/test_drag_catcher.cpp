#include "dragdrop/drag_catcher.h"

#include <QMimeData>
#include <QTest>

using namespace ledgewise;

namespace {

class RecordingHandler final : public QObject, public DragDestinationHandling
{
public:
    void dragDidEnter(std::shared_ptr<const DropPayload> payload) override
    {
        log << QStringLiteral("enter ") + payload->summary();
    }
    void dragDidExit() override { log << QStringLiteral("exit"); }
    void dragDidDrop(std::shared_ptr<const DropPayload> payload) override
    {
        log << QStringLiteral("drop ") + payload->summary();
    }
    QStringList log;
};

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
        QCOMPARE(handler.log, QStringList({"enter some text", "exit"}));
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
        QCOMPARE(handler.log, QStringList({"exit"}));
    }

    void completedDropReportsTheDropAndNoExit()
    {
        DragCatcher catcher;
        RecordingHandler handler;
        catcher.setHandler(&handler, &handler);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt")), QUrl::fromLocalFile(QStringLiteral("/tmp/b.txt"))});
        QVERIFY(catcher.draggingEntered(data));
        QVERIFY(catcher.prepareForDragOperation(data));
        QVERIFY(catcher.performDragOperation(data));
        QCOMPARE(handler.log, QStringList({"enter 2 files", "drop 2 files"}));
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

    void emptyDragIsRefused()
    {
        DragCatcher catcher;
        QMimeData data;
        QVERIFY(!catcher.draggingUpdated(data));
        QVERIFY(!catcher.draggingEntered(data));
    }
};

QTEST_MAIN(TestDragCatcher)
#include "test_drag_catcher.moc"
