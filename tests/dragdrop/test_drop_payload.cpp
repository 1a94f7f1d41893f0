// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_action.h"
#include "dragdrop/drop_payload.h"

#include <QBuffer>
#include <QMimeData>
#include <QTest>

using namespace ledgewise;

namespace {

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage redSquare()
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray utf16(const QString &text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

} // namespace

class TestDropPayload : public QObject
{
    Q_OBJECT

private slots:
    void twoFilesInOrder()
    {
        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile("/home/a/report.pdf"), QUrl::fromLocalFile("/home/a/notes.txt") });
        data.setText(QStringLiteral("ignored"));
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::files);
        QCOMPARE(payload->fileURLs,
            QList<QUrl>({ QUrl::fromLocalFile("/home/a/report.pdf"), QUrl::fromLocalFile("/home/a/notes.txt") }));
        QVERIFY(payload->urls.isEmpty());
        QVERIFY(!payload->text);
        QCOMPARE(payload->summary(), QStringLiteral("2 files"));
        QCOMPARE(payload->shareItems(),
            QVariantList({ QUrl::fromLocalFile("/home/a/report.pdf"), QUrl::fromLocalFile("/home/a/notes.txt") }));
    }

    void oneFileIsSummarisedByItsName()
    {
        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile("/tmp/report.pdf") });
        QCOMPARE(DropPayload::from(data)->summary(), QStringLiteral("report.pdf"));
    }

    void filesWinOverLinksInTheSameList()
    {
        QMimeData data;
        data.setUrls({ QUrl(QStringLiteral("https://example.org/")), QUrl::fromLocalFile("/tmp/a.txt") });
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload->kind, DropPayload::Kind::files);
        QCOMPARE(payload->fileURLs, QList<QUrl>({ QUrl::fromLocalFile("/tmp/a.txt") }));
    }

    void browserLinkIsSummarisedByItsHost()
    {
        QMimeData data;
        data.setUrls({ QUrl(QStringLiteral("https://www.example.org/page?q=1")) });
        data.setText(QStringLiteral("https://www.example.org/page?q=1"));
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload->kind, DropPayload::Kind::urls);
        QCOMPARE(payload->urls, QList<QUrl>({ QUrl(QStringLiteral("https://www.example.org/page?q=1")) }));
        QCOMPARE(payload->summary(), QStringLiteral("www.example.org"));
        QCOMPARE(payload->shareItems(), QVariantList({ QUrl(QStringLiteral("https://www.example.org/page?q=1")) }));
    }

    void browserOnlyLinkFormatIsRead()
    {
        QMimeData data;
        data.setData(QStringLiteral("text/x-moz-url"), utf16(QStringLiteral("https://news.example.com/a\nA title")));
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::urls);
        QCOMPARE(payload->summary(), QStringLiteral("news.example.com"));
    }

    void linkWithoutHostShowsDrop()
    {
        QMimeData data;
        data.setUrls({ QUrl(QStringLiteral("mailto:someone@example.org")) });
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload->kind, DropPayload::Kind::urls);
        QCOMPARE(payload->summary(), QStringLiteral("Drop"));
    }

    void copiedFilesListOfTwoPathsGivesFiles()
    {
        QMimeData data;
        data.setData(
            QStringLiteral("x-special/gnome-copied-files"), "copy\nfile:///home/a/one.png\n/home/a/two words.txt");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::files);
        QCOMPARE(payload->fileURLs,
            QList<QUrl>({ QUrl::fromLocalFile("/home/a/one.png"), QUrl::fromLocalFile("/home/a/two words.txt") }));
    }

    void imageWinsOverTextAndIsSummarisedAsImage()
    {
        QMimeData data;
        data.setData(QStringLiteral("image/tiff"), encoded(redSquare(), "TIFF"));
        data.setText(QStringLiteral("caption"));
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::image);
        QCOMPARE(payload->image->size(), QSize(8, 8));
        QCOMPARE(payload->summary(), QStringLiteral("Image"));
        QCOMPARE(payload->shareItems().size(), 1);
    }

    void pngIsReadBeforeTiff()
    {
        QImage blue(4, 4, QImage::Format_ARGB32);
        blue.fill(Qt::blue);
        QMimeData data;
        data.setData(QStringLiteral("image/tiff"), encoded(redSquare(), "TIFF"));
        data.setData(QStringLiteral("image/png"), encoded(blue, "PNG"));
        QCOMPARE(DropPayload::from(data)->image->size(), QSize(4, 4));
    }

    void otherImageTypesAreReadToo()
    {
        QMimeData data;
        data.setData(QStringLiteral("image/bmp"), encoded(redSquare(), "BMP"));
        QCOMPARE(DropPayload::from(data)->kind, DropPayload::Kind::image);
    }

    void unreadableImageBytesFallThroughToText()
    {
        QMimeData data;
        data.setData(QStringLiteral("image/png"), "\x89PNG but not really");
        data.setText(QStringLiteral("fallback"));
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload->kind, DropPayload::Kind::text);
        QCOMPARE(*payload->text, QStringLiteral("fallback"));
    }

    void emptyTextIsNoPayloadButWhiteSpaceIs()
    {
        QMimeData empty;
        empty.setText(QString());
        QCOMPARE(DropPayload::from(empty), std::nullopt);

        QMimeData space;
        space.setText(QStringLiteral(" "));
        const auto payload = DropPayload::from(space);
        QVERIFY(payload);
        QCOMPARE(*payload->text, QStringLiteral(" "));
    }

    void textOnlyIsSummarisedByTheText()
    {
        QMimeData data;
        data.setText(QStringLiteral("Meeting at 10, room 4"));
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload->kind, DropPayload::Kind::text);
        QCOMPARE(payload->summary(), QStringLiteral("Meeting at 10, room 4"));
        QCOMPARE(payload->shareItems(), QVariantList({ QStringLiteral("Meeting at 10, room 4") }));
    }

    void brokenUriListsKeepTheGoodEntries()
    {
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"),
            "# a comment\r\nnot a url at all\r\nhttp://[broken\r\n\r\nfile:///tmp/ok.txt\r\n\xff\xfe");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->fileURLs, QList<QUrl>({ QUrl::fromLocalFile("/tmp/ok.txt") }));

        QMimeData garbage;
        static const char garbageBytes[] = "\x00\x01\x02 % %% http://";
        garbage.setData(QStringLiteral("text/uri-list"), QByteArray(garbageBytes, sizeof garbageBytes - 1));
        QCOMPARE(DropPayload::from(garbage), std::nullopt);

        QMimeData oddMozilla;
        oddMozilla.setData(QStringLiteral("text/x-moz-url"), "abc"); // odd length: not UTF-16
        QCOMPARE(DropPayload::from(oddMozilla), std::nullopt);
    }

    void brokenUriListAloneIsNotText()
    {
        for (const QByteArray &list : { QByteArray("not a url at all"), QByteArray("not a url at all\r\n"),
                 QByteArray("# comment"), QByteArray("# comment\r\nnot a url at all\r\n") }) {
            QMimeData data;
            data.setData(QStringLiteral("text/uri-list"), list);
            QCOMPARE(DropPayload::from(data), std::nullopt);
        }
    }

    void textComesFromThePlainTextTypesUtf8First()
    {
        QMimeData both;
        both.setData(QStringLiteral("text/plain;charset=utf-8"),
            "gr\xc3\xbc\xc3\x9f"
            "e");
        both.setData(QStringLiteral("text/plain"), "other");
        QCOMPARE(*DropPayload::from(both)->text, QStringLiteral("grüße"));

        QMimeData utf8Only;
        utf8Only.setData(QStringLiteral("text/plain;charset=utf-8"), "caf\xc3\xa9");
        const auto payload = DropPayload::from(utf8Only);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::text);
        QCOMPARE(payload->summary(), QStringLiteral("café"));

        QMimeData emptyUtf8;
        emptyUtf8.setData(QStringLiteral("text/plain;charset=utf-8"), "");
        emptyUtf8.setData(QStringLiteral("text/plain"), "plain");
        QCOMPARE(*DropPayload::from(emptyUtf8)->text, QStringLiteral("plain"));
    }

    void copiedFilesListWithoutItsFirstLineKeepsEveryFile()
    {
        QMimeData bare;
        bare.setData(QStringLiteral("x-special/gnome-copied-files"), "file:///home/a/one.png\n/home/a/two.txt");
        QCOMPARE(DropPayload::from(bare)->fileURLs,
            QList<QUrl>({ QUrl::fromLocalFile("/home/a/one.png"), QUrl::fromLocalFile("/home/a/two.txt") }));

        QMimeData cut;
        cut.setData(QStringLiteral("x-special/gnome-copied-files"), "cut\nfile:///home/a/one.png\n");
        QCOMPARE(DropPayload::from(cut)->fileURLs, QList<QUrl>({ QUrl::fromLocalFile("/home/a/one.png") }));

        QMimeData onlyTheWord;
        onlyTheWord.setData(QStringLiteral("x-special/gnome-copied-files"), "copy");
        QCOMPARE(DropPayload::from(onlyTheWord), std::nullopt);
    }

    void folderWithATrailingSlashIsSummarisedByItsName()
    {
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), "file:///home/a/Holiday%20photos/\r\n");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::files);
        QCOMPARE(payload->summary(), QStringLiteral("Holiday photos"));
        QCOMPARE(fileName(QUrl(QStringLiteral("file:///home/a/dir//"))), QStringLiteral("dir"));
        QCOMPARE(fileName(QUrl(QStringLiteral("file:///"))), QStringLiteral("/"));
    }

    void onlyTheOldLinkTypeIsLetInButReadsAsNothing()
    {
        QMimeData data;
        data.setData(QStringLiteral("_NETSCAPE_URL"), "https://example.org");
        QVERIFY(DropPayload::offersRegisteredType(data));
        QCOMPARE(DropPayload::from(data), std::nullopt);

        QMimeData foreign;
        foreign.setData(QStringLiteral("application/x-unknown"), "x");
        QVERIFY(!DropPayload::offersRegisteredType(foreign));
    }

    void registeredTypesFollowTheReadingOrder()
    {
        const QStringList types = DropPayload::registeredTypes();
        QCOMPARE(types.first(), QStringLiteral("text/uri-list"));
        QCOMPARE(types.at(1), QStringLiteral("text/x-moz-url"));
        QCOMPARE(types.at(2), QStringLiteral("text/plain"));
        QVERIFY(types.indexOf(QStringLiteral("image/png")) < types.indexOf(QStringLiteral("image/tiff")));
        QVERIFY(types.indexOf(QStringLiteral("image/tiff"))
            < types.indexOf(QStringLiteral("x-special/gnome-copied-files")));
        QCOMPARE(types.last(), QStringLiteral("_NETSCAPE_URL"));
    }

    void relativeFileUrisAreNeverFiles()
    {
        // Resolved against the working folder, "file:." would be whatever folder
        // Ledgewise happened to start in.
        QMimeData relative;
        relative.setData(QStringLiteral("text/uri-list"), "file:.\r\nfile:..\r\nfile:foo\r\nfile:foo/bar.txt\r\n");
        QVERIFY(!DropPayload::from(relative));

        QMimeData mixed;
        mixed.setData(QStringLiteral("text/uri-list"), "file:.\r\nfile:///tmp/real.txt\r\nfile:..\r\n");
        const auto files = DropPayload::from(mixed);
        QVERIFY(files);
        QCOMPARE(files->fileURLs, QList<QUrl>({ QUrl(QStringLiteral("file:///tmp/real.txt")) }));

        // Only relative entries: the reading goes on to what else the drag carries.
        QMimeData withText;
        withText.setData(QStringLiteral("text/uri-list"), "file:..\r\n");
        withText.setData(QStringLiteral("text/plain"), "caption");
        const auto text = DropPayload::from(withText);
        QVERIFY(text);
        QCOMPARE(text->kind, DropPayload::Kind::text);
        QCOMPARE(*text->text, QStringLiteral("caption"));
    }

    void fileUrisOnAnotherHostAreNeitherFilesNorLinks()
    {
        QMimeData data;
        data.setData(
            QStringLiteral("text/uri-list"), "file://otherhost/etc/passwd\r\nfile://localhost/tmp/here.txt\r\n");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->fileURLs, QList<QUrl>({ QUrl(QStringLiteral("file:///tmp/here.txt")) }));
        QVERIFY(payload->urls.isEmpty());

        QMimeData remoteOnly;
        remoteOnly.setData(QStringLiteral("text/uri-list"), "file://otherhost/etc/passwd\r\n");
        QVERIFY(!DropPayload::from(remoteOnly));
    }

    void copiedFilesListKeepsOnlyAbsoluteLocalFiles()
    {
        QMimeData data;
        data.setData(QStringLiteral("x-special/gnome-copied-files"),
            "copy\nfile:.\nfile:..\nfile://otherhost/x\nfile:///home/me/kept.txt\n/home/me/path.txt");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->fileURLs,
            QList<QUrl>({ QUrl::fromLocalFile(QStringLiteral("/home/me/kept.txt")),
                QUrl::fromLocalFile(QStringLiteral("/home/me/path.txt")) }));

        QMimeData relativeOnly;
        relativeOnly.setData(QStringLiteral("x-special/gnome-copied-files"), "copy\nfile:.\n");
        QVERIFY(!DropPayload::from(relativeOnly));
    }

    void secretMarkIsKept()
    {
        QMimeData data;
        data.setText(QStringLiteral("hunter2"));
        QVERIFY(!DropPayload::from(data)->secret);
        data.setData(QStringLiteral("x-kde-passwordManagerHint"), "public");
        QVERIFY(!DropPayload::from(data)->secret);
        data.setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
        QVERIFY(DropPayload::from(data)->secret);
    }

    void deferredImageIsDecodedOnlyWhenAsked()
    {
        QMimeData data;
        data.setData(QStringLiteral("image/png"), encoded(redSquare(), "PNG"));
        data.setText(QStringLiteral("caption"));
        const int before = DropPayload::imageDecodeCount();
        auto deferred = DropPayload::from(data, DropPayload::ImageReading::defer);
        QVERIFY(deferred);
        QCOMPARE(deferred->kind, DropPayload::Kind::image);
        QCOMPARE(deferred->summary(), QStringLiteral("Image"));
        QCOMPARE(DropPayload::imageDecodeCount(), before);
        QVERIFY(deferred->decodeImage());
        QCOMPARE(DropPayload::imageDecodeCount(), before + 1);
        QCOMPARE(deferred->image->size(), QSize(8, 8));
        QVERIFY(deferred->encodedImage.isEmpty());

        const auto decoded = DropPayload::from(data);
        QCOMPARE(DropPayload::imageDecodeCount(), before + 2);
        QCOMPARE(decoded->image->pixelColor(3, 3), QColor(Qt::red));
    }

    void tenThousandFilesAreSummarisedByTheirCount()
    {
        QList<QUrl> files;
        for (int i = 0; i < 10000; ++i)
            files << QUrl::fromLocalFile(QStringLiteral("/home/me/photos/IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
        QMimeData data;
        data.setUrls(files);
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->kind, DropPayload::Kind::files);
        QCOMPARE(payload->fileURLs.size(), 10000);
        QCOMPARE(payload->fileURLs.last(), files.last());
        QCOMPARE(payload->summary(), QStringLiteral("10000 files"));
        QCOMPARE(payload->shareItems().size(), 10000);
    }

    void fiftyMegabyteTextIsKeptWholeAndCutInTheSummary()
    {
        QByteArray text(50 * 1024 * 1024, 'x');
        text.replace(0, 11, "Chapter one");
        QMimeData data;
        data.setData(QStringLiteral("text/plain"), text);
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        const QString summary = payload->summary();
        QCOMPARE(summary, QStringLiteral("Chapter one") + QString(989, QLatin1Char('x')) + QChar(0x2026));
        // Neither reading the drop nor its summary converts the whole text.
        QVERIFY(!payload->text.isDecoded());
        QCOMPARE(payload->text->size(), text.size());
        QVERIFY(payload->text.isDecoded());
        QCOMPARE(payload->summary(), summary);
    }

    void summaryOfALongTextOfWideCharactersIsCutAfterAThousand()
    {
        // Two, three and four bytes a character: the summary reads only the start of
        // the bytes, and still shows exactly what the whole text would.
        const QStringList letters = { QStringLiteral("é"), QStringLiteral("€"), QString::fromUtf8("\xF0\x9F\x98\x80") };
        for (const QString &letter : letters) {
            const QString text = letter.repeated(100000);
            QMimeData data;
            data.setData(QStringLiteral("text/plain"), text.toUtf8());
            const auto payload = DropPayload::from(data);
            QVERIFY(payload);
            const QString summary = payload->summary();
            QVERIFY(!payload->text.isDecoded());
            QCOMPARE(summary, text.left(1000) + QChar(0x2026));
            QCOMPARE(*payload->text, text);
        }
        // 999 letters and then pairs: the cut falls inside the first pair.
        const QString mixed = QString(999, QLatin1Char('a')) + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(5000);
        QMimeData data;
        data.setData(QStringLiteral("text/plain"), mixed.toUtf8());
        QCOMPARE(DropPayload::from(data)->summary(), QString(999, QLatin1Char('a')) + QChar(0x2026));
    }

    void textOfOnlyAByteOrderMarkIsNoPayload()
    {
        QMimeData data;
        data.setData(QStringLiteral("text/plain"), "\xEF\xBB\xBF");
        const auto payload = DropPayload::from(data);
        QCOMPARE(payload.has_value(), !QString::fromUtf8("\xEF\xBB\xBF").isEmpty());
    }

    void cutTextNeverSplitsACharacterOutsideTheBasicPlane()
    {
        // 999 letters, then smileys: the cut falls inside the first one's surrogate pair.
        const QString text = QString(999, QLatin1Char('a')) + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(10);
        QMimeData data;
        data.setText(text);
        const QString summary = DropPayload::from(data)->summary();
        QCOMPARE(summary, QString(999, QLatin1Char('a')) + QChar(0x2026));
    }

    void fileNameOfFourThousandCharactersKeepsItsStartAndExtension()
    {
        const QString name
            = QStringLiteral("Quarterly report ") + QString(3979, QLatin1Char('z')) + QStringLiteral(".pdf");
        QCOMPARE(name.size(), 4000);
        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile(QStringLiteral("/tmp/") + name) });
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(fileName(payload->fileURLs.constFirst()), name); // the file itself is named in full
        const QString summary = payload->summary();
        QVERIFY2(summary.size() <= 120, qPrintable(QString::number(summary.size())));
        QVERIFY(summary.startsWith(QStringLiteral("Quarterly report zzz")));
        QVERIFY(summary.endsWith(QStringLiteral("zzz.pdf")));
        QVERIFY(summary.contains(QChar(0x2026)));
    }

    void fileNameWithLineBreaksShowsOnOneLine()
    {
        QMimeData data;
        // As a file manager offers it: the line breaks percent-encoded.
        data.setData(QStringLiteral("text/uri-list"), "file:///tmp/first%0Asecond%0D%0Athird%09.txt\r\n");
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QCOMPARE(payload->fileURLs.constFirst().toLocalFile(), QStringLiteral("/tmp/first\nsecond\r\nthird\t.txt"));
        QCOMPARE(payload->summary(), QStringLiteral("first second  third .txt"));
    }

    void dragOfOnlyAnUnreadableTypeIsNothing()
    {
        QMimeData data;
        data.setData(
            QStringLiteral("application/x-qt-windows-mime;value=\"FileGroupDescriptorW\""), QByteArray(4096, '\0'));
        data.setData(QStringLiteral("application/octet-stream"), QByteArray(1 << 20, '\xff'));
        QVERIFY(!DropPayload::offersRegisteredType(data));
        QCOMPARE(DropPayload::from(data), std::nullopt);
    }

    void nothingUsableGivesNoPayload()
    {
        QMimeData data;
        QCOMPARE(DropPayload::from(data), std::nullopt);
    }

    void actionsInTheirOrderWithTitlesAndSymbols()
    {
        QStringList raws, titles, symbols;
        for (DropAction action : allDropActions) {
            raws << rawValue(action);
            titles << title(action);
            symbols << systemImage(action);
            QCOMPARE(dropActionFromRaw(rawValue(action)), action);
        }
        QCOMPARE(raws, QStringList({ "copy", "save", "share", "open", "airDrop" }));
        QCOMPARE(titles, QStringList({ "Copy", "Save", "Share", "Open", "Send to Device" }));
        QCOMPARE(symbols,
            QStringList({ "doc.on.doc", "arrow.down.to.line", "square.and.arrow.up", "arrow.up.forward",
                "dot.radiowaves.left.and.right" }));
        QCOMPARE(dropActionFromRaw(QStringLiteral("Copy")), std::nullopt);
    }
};

QTEST_MAIN(TestDropPayload)
#include "test_drop_payload.moc"
