#include "dragdrop/drop_actions.h"
#include "platform/clipboard/qt_pasteboard.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;

namespace {

// What another application gets when it pastes: `xclip -o` for one target, run while
// our event loop keeps serving the selection.
QByteArray pasteElsewhere(const QString &target)
{
    QProcess xclip;
    QSignalSpy finished(&xclip, &QProcess::finished);
    xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o"),
                                          QStringLiteral("-t"), target});
    if (!finished.wait(10000))
        return "<xclip did not finish>";
    return xclip.readAllStandardOutput();
}

} // namespace

class TestDropCopyX11 : public QObject
{
    Q_OBJECT

private slots:
    void filesArePastedAsFilesByOtherApplications()
    {
        QtPasteboard pasteboard;
        QVERIFY(pasteboard.announcesChanges());
        const DropPayload payload{DropPayload::Kind::files,
                                  {QUrl::fromLocalFile("/tmp/one file.txt"), QUrl::fromLocalFile("/tmp/two.png")},
                                  {},
                                  std::nullopt,
                                  std::nullopt};
        DropActions::copy(payload, pasteboard);
        const QByteArray targets = pasteElsewhere(QStringLiteral("TARGETS"));
        QVERIFY2(targets.contains("text/uri-list"), targets.constData());
        QVERIFY2(targets.contains("x-special/gnome-copied-files"), targets.constData());
        QCOMPARE(pasteElsewhere(QStringLiteral("text/uri-list")),
                 QByteArray("file:///tmp/one%20file.txt\r\nfile:///tmp/two.png\r\n"));
        QCOMPARE(pasteElsewhere(QStringLiteral("x-special/gnome-copied-files")),
                 QByteArray("copy\nfile:///tmp/one%20file.txt\nfile:///tmp/two.png"));
    }

    void textAndImageReachOtherApplications()
    {
        QtPasteboard pasteboard;
        DropActions::copy(DropPayload{DropPayload::Kind::text, {}, {}, QStringLiteral("grüße"), std::nullopt}, pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("gr\xc3\xbc\xc3\x9f" "e"));

        QImage image(5, 7, QImage::Format_ARGB32);
        image.fill(Qt::magenta);
        DropActions::copy(DropPayload{DropPayload::Kind::image, {}, {}, std::nullopt, image}, pasteboard);
        QImage pasted;
        QVERIFY(pasted.loadFromData(pasteElsewhere(QStringLiteral("image/png")), "PNG"));
        QCOMPARE(pasted.size(), QSize(5, 7));
        QCOMPARE(QColor(pasted.pixel(2, 3)), QColor(Qt::magenta));
    }

    void ourWritesMoveTheCounter()
    {
        QtPasteboard pasteboard;
        const qint64 before = pasteboard.changeCount();
        QSignalSpy changed(&pasteboard, &Pasteboard::changed);
        DropActions::copy(DropPayload{DropPayload::Kind::text, {}, {}, QStringLiteral("x"), std::nullopt}, pasteboard);
        QTRY_VERIFY(pasteboard.changeCount() > before);
        QVERIFY(changed.count() >= 1);
    }
};

QTEST_MAIN(TestDropCopyX11)
#include "test_drop_copy_x11.moc"
