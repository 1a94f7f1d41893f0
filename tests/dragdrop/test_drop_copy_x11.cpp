// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_actions.h"
#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "tests/support/x11_tools.h"

#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

class TestDropCopyX11 : public QObject
{
    Q_OBJECT

private slots:
    void filesArePastedAsFilesByOtherApplications()
    {
        QtPasteboard pasteboard;
        QVERIFY(pasteboard.announcesChanges());
        const DropPayload payload { DropPayload::Kind::files,
            { QUrl::fromLocalFile("/tmp/one file.txt"), QUrl::fromLocalFile("/tmp/two.png") }, {}, std::nullopt,
            std::nullopt };
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
        DropActions::copy(
            DropPayload { DropPayload::Kind::text, {}, {}, QStringLiteral("grüße"), std::nullopt }, pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")),
            QByteArray("gr\xc3\xbc\xc3\x9f"
                       "e"));

        QImage image(5, 7, QImage::Format_ARGB32);
        image.fill(Qt::magenta);
        DropActions::copy(DropPayload { DropPayload::Kind::image, {}, {}, std::nullopt, image }, pasteboard);
        QImage pasted;
        QVERIFY(pasted.loadFromData(pasteElsewhere(QStringLiteral("image/png")), "PNG"));
        QCOMPARE(pasted.size(), QSize(5, 7));
        QCOMPARE(QColor(pasted.pixel(2, 3)), QColor(Qt::magenta));
    }

    void linksArePastedAsALinkList()
    {
        QtPasteboard pasteboard;
        DropActions::copy(
            DropPayload { DropPayload::Kind::urls, {},
                { QUrl(QStringLiteral("https://example.org/a b")), QUrl(QStringLiteral("mailto:x@example.org")) },
                std::nullopt, std::nullopt },
            pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("text/uri-list")),
            QByteArray("https://example.org/a%20b\r\nmailto:x@example.org\r\n"));
        QCOMPARE(
            pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("https://example.org/a b\nmailto:x@example.org"));
    }

    void copyingNothingAfterSomeTextLeavesTheClipboardEmpty()
    {
        QtPasteboard pasteboard;
        DropActions::copy(
            DropPayload { DropPayload::Kind::text, {}, {}, QStringLiteral("before"), std::nullopt }, pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("before"));
        DropActions::copy(DropPayload {}, pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray());
        QCOMPARE(pasteElsewhere(QStringLiteral("TARGETS")), QByteArray());
    }

    void twoFilesOfferTheirUrlsAndNothingElse()
    {
        QtPasteboard pasteboard;
        DropActions::copy(
            DropPayload { DropPayload::Kind::text, {}, {}, QStringLiteral("stray"), std::nullopt }, pasteboard);
        const DropPayload payload { DropPayload::Kind::files,
            { QUrl::fromLocalFile("/tmp/picture.png"), QUrl::fromLocalFile("/tmp/notes.txt") }, {}, std::nullopt,
            std::nullopt };
        DropActions::copy(payload, pasteboard);
        QStringList targets = QString::fromLatin1(pasteElsewhere(QStringLiteral("TARGETS")))
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        targets.sort();
        // The link list, the forms X offers a link list in, and the file managers' list;
        // the rest is the selection protocol's own.
        QCOMPARE(targets,
            QStringList({ "MULTIPLE", "SAVE_TARGETS", "TARGETS", "TIMESTAMP", "text/plain", "text/uri-list",
                "text/x-moz-url", "x-special/gnome-copied-files" }));
        QCOMPARE(pasteElsewhere(QStringLiteral("text/uri-list")),
            QByteArray("file:///tmp/picture.png\r\nfile:///tmp/notes.txt\r\n"));
        // Text pasted elsewhere is the files' addresses, not what was copied before.
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")),
            QByteArray("file:///tmp/picture.png\nfile:///tmp/notes.txt\n"));
        QCOMPARE(pasteElsewhere(QStringLiteral("image/png")), QByteArray());
    }

    void ourWritesMoveTheCounter()
    {
        QtPasteboard pasteboard;
        const qint64 before = pasteboard.changeCount();
        QSignalSpy changed(&pasteboard, &Pasteboard::changed);
        DropActions::copy(
            DropPayload { DropPayload::Kind::text, {}, {}, QStringLiteral("x"), std::nullopt }, pasteboard);
        QTRY_VERIFY(pasteboard.changeCount() > before);
        QVERIFY(changed.count() >= 1);
    }

    void secretTextCopiedBackKeepsItsMarkAndStaysOutOfTheHistory()
    {
        QtPasteboard pasteboard;
        QTemporaryDir storage;
        ClipboardStore history(pasteboard, storage.path(), 50, true);
        const auto dropped = [](const QString &text, bool secret) {
            QMimeData data;
            data.setText(text);
            if (secret)
                data.setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
            return *DropPayload::from(data);
        };

        // The history does take what Copy puts on the clipboard...
        DropActions::copy(dropped(QStringLiteral("plain words"), false), pasteboard);
        QTRY_COMPARE(history.count(), 1);

        // ...but not a password manager's secret, which other applications see marked.
        const DropPayload secret = dropped(QStringLiteral("hunter2"), true);
        QVERIFY(secret.secret);
        DropActions::copy(secret, pasteboard);
        QCOMPARE(pasteElsewhere(QStringLiteral("x-kde-passwordManagerHint")), QByteArray("secret"));
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("hunter2"));

        // Changes are taken in order: once the next copy is in, the secret was seen.
        DropActions::copy(dropped(QStringLiteral("after"), false), pasteboard);
        QTRY_COMPARE(history.count(), 2);
        for (const ClipboardItem &item : history.items())
            QVERIFY(item.text != QStringLiteral("hunter2"));
        history.flush();
        QFile file(history.historyPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("hunter2"));
    }
};

QTEST_MAIN(TestDropCopyX11)
#include "test_drop_copy_x11.moc"
