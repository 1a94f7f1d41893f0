// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_rules.h"
#include "tests/modules/clipboard/clipboard_test_support.h"
#include "tests/support/fake_pasteboard.h"

#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

ClipboardItem textItem(const QString &text, bool pinned = false)
{
    return { QUuid::createUuid(), 1, ClipboardKind::text, text, std::nullopt, std::nullopt, pinned };
}

ClipboardItem urlItem(const QString &url)
{
    return { QUuid::createUuid(), 1, ClipboardKind::url, std::nullopt, url, std::nullopt, false };
}

} // namespace

class TestClipboardRules : public QObject
{
    Q_OBJECT

private slots:
    void historyFileRoundTripsWithAbsentKeysLeftOut()
    {
        const QList<ClipboardItem> items = {
            { QUuid::createUuid(), 785000000.125, ClipboardKind::text, QStringLiteral("hello"), std::nullopt,
                std::nullopt, true },
            { QUuid::createUuid(), 785000001.5, ClipboardKind::url, std::nullopt,
                QStringLiteral("https://example.org/"), std::nullopt, false },
            { QUuid::createUuid(), 785000002, ClipboardKind::image, std::nullopt, std::nullopt,
                QStringLiteral("0F8A3E2C-1B2D-4C5E-8F90-123456789ABC.png"), false },
        };
        const QByteArray json = encodeHistory(items);
        QCOMPARE(decodeHistory(json), items);
        const QJsonArray array = QJsonDocument::fromJson(json).array();
        QCOMPARE(array.size(), 3);
        const QJsonObject text = array[0].toObject();
        QCOMPARE(text.keys(), QStringList({ "createdAt", "id", "isPinned", "kind", "text" }));
        QCOMPARE(text.value("id").toString(), items[0].id.toString(QUuid::WithoutBraces).toUpper());
        QCOMPARE(text.value("createdAt").toDouble(), 785000000.125);
        QVERIFY(!json.contains("null"));
        QVERIFY(!json.contains('\n'));
    }

    void entryWithoutIsPinnedMakesTheWholeFileUnreadable()
    {
        const QByteArray good
            = R"({"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":1,"kind":"text","text":"a","isPinned":false})";
        const QByteArray bad
            = R"({"id":"1F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":2,"kind":"text","text":"b"})";
        QVERIFY(decodeHistory("[" + good + "]"));
        QCOMPARE(decodeHistory("[" + good + "," + bad + "]"), std::nullopt);
    }

    void otherUndecodableHistories_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("object") << QByteArray("{}");
        QTest::newRow("garbage") << QByteArray("\x00\xff[", 3);
        QTest::newRow("bad kind") << QByteArray(
            R"([{"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":1,"kind":"video","isPinned":false}])");
        QTest::newRow("bad id") << QByteArray(R"([{"id":"nope","createdAt":1,"kind":"text","isPinned":false}])");
        QTest::newRow("date as text") << QByteArray(
            R"([{"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":"1","kind":"text","isPinned":false}])");
        QTest::newRow("text as number") << QByteArray(
            R"([{"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":1,"kind":"text","text":5,"isPinned":false}])");
        QTest::newRow("entry not object") << QByteArray("[1]");
    }
    void otherUndecodableHistories()
    {
        QFETCH(QByteArray, json);
        QCOMPARE(decodeHistory(json), std::nullopt);
    }

    void emptyArrayIsAnEmptyHistory() { QCOMPARE(decodeHistory("[]"), QList<ClipboardItem>()); }

    void referenceDateIsTheStartOf2001()
    {
        QCOMPARE(secondsSinceReferenceDate(978307200000), 0.0);
        QCOMPARE(secondsSinceReferenceDate(978307201500), 1.5);
    }

    void linkBeatsTextAndOnlyExactHttpSchemesAreLinks()
    {
        FakePasteboard pasteboard;
        auto *link = new QMimeData;
        link->setUrls({ QUrl(QStringLiteral("https://example.org/a")) });
        link->setText(QStringLiteral("Example"));
        pasteboard.copyFromElsewhere(link);
        Capture capture = ClipboardRules::classify(pasteboard, {});
        QCOMPARE(capture.kind, Capture::Kind::link);
        QCOMPARE(capture.value, QStringLiteral("https://example.org/a"));

        pasteboard.offerFromElsewhere({ { QStringLiteral("text/uri-list"), "HTTP://EXAMPLE.ORG/\r\n" },
            { QStringLiteral("text/plain"), "HTTP://EXAMPLE.ORG/" } });
        QCOMPARE(ClipboardRules::classify(pasteboard, {}).kind, Capture::Kind::text);

        auto *file = new QMimeData;
        file->setUrls({ QUrl::fromLocalFile(QStringLiteral("/home/a/photo.png")) });
        file->setData(QStringLiteral("image/png"), pngOf(Qt::red));
        pasteboard.copyFromElsewhere(file);
        QCOMPARE(ClipboardRules::classify(pasteboard, {}).kind, Capture::Kind::image);
    }

    void repeatsOfTheNewestEntryOnly()
    {
        FakePasteboard pasteboard;
        pasteboard.copyFromElsewhere(textData(QStringLiteral("A")));
        QCOMPARE(ClipboardRules::classify(pasteboard, { textItem("A") }).kind, Capture::Kind::nothing);
        QCOMPARE(ClipboardRules::classify(pasteboard, { textItem("B"), textItem("A") }).kind, Capture::Kind::text);
        QCOMPARE(ClipboardRules::classify(pasteboard, { urlItem("A") }).kind, Capture::Kind::text);

        pasteboard.copyFromElsewhere(textData(QStringLiteral("  hello  ")));
        QCOMPARE(ClipboardRules::classify(pasteboard, { textItem("hello") }).kind, Capture::Kind::text);
    }

    void whiteSpaceIsNotTextButAnImageStillCounts()
    {
        FakePasteboard pasteboard;
        pasteboard.copyFromElsewhere(textData(QStringLiteral(" \n\t ")));
        QCOMPARE(ClipboardRules::classify(pasteboard, {}).kind, Capture::Kind::nothing);
        auto *both = textData(QStringLiteral("  \n"));
        both->setData(QStringLiteral("image/png"), pngOf(Qt::blue));
        pasteboard.copyFromElsewhere(both);
        QCOMPARE(ClipboardRules::classify(pasteboard, {}).kind, Capture::Kind::image);
    }

    void tiffIsReadBeforePng()
    {
        FakePasteboard pasteboard;
        const QByteArray tiff = imageOf(Qt::red, "TIFF");
        QVERIFY(!tiff.isEmpty());
        auto *both = new QMimeData;
        both->setData(QStringLiteral("image/png"), pngOf(Qt::blue));
        both->setData(QStringLiteral("image/tiff"), tiff);
        pasteboard.copyFromElsewhere(both);
        const Capture capture = ClipboardRules::classify(pasteboard, {});
        QCOMPARE(capture.kind, Capture::Kind::image);
        QCOMPARE(capture.imageData, tiff);

        auto *pngOnly = new QMimeData;
        pngOnly->setData(QStringLiteral("image/png"), pngOf(Qt::blue));
        pasteboard.copyFromElsewhere(pngOnly);
        QCOMPARE(ClipboardRules::classify(pasteboard, {}).imageData, pngOf(Qt::blue));
    }

    void secretsAreRecognised()
    {
        FakePasteboard pasteboard;
        auto *secret = textData(QStringLiteral("hunter2"));
        secret->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
        pasteboard.copyFromElsewhere(secret);
        QVERIFY(ClipboardRules::isSecret(pasteboard));
        auto *other = textData(QStringLiteral("hunter2"));
        other->setData(QStringLiteral("x-kde-passwordManagerHint"), "public");
        pasteboard.copyFromElsewhere(other);
        QVERIFY(!ClipboardRules::isSecret(pasteboard));
    }

    void aMebibyteOfTextIsKeptWhole()
    {
        const QString text(ClipboardRules::maximumTextBytes, QLatin1Char('x'));
        QCOMPARE(ClipboardRules::storedText(text), text);
        // Measured in UTF-8: 349,525 three-byte characters and one byte more fit.
        const QString wide = QString(349'525, QChar(0x20ac)) + QLatin1Char('x');
        QCOMPARE(ClipboardRules::utf8Size(wide, ClipboardRules::maximumTextBytes), ClipboardRules::maximumTextBytes);
        QCOMPARE(ClipboardRules::storedText(wide), wide);
    }

    void longerTextKeepsItsFirstMebibyteAndSaysItWasCut()
    {
        const QString text = QString(4 * ClipboardRules::maximumTextBytes, QLatin1Char('y'));
        const QString stored = ClipboardRules::storedText(text);
        QCOMPARE(stored,
            QString(ClipboardRules::maximumTextBytes, QLatin1Char('y'))
                + QStringLiteral("\u2026\n[Cut: 1,048,576 of 4,194,304 bytes copied are kept.]"));

        FakePasteboard pasteboard;
        pasteboard.copyFromElsewhere(textData(text));
        const Capture capture = ClipboardRules::classify(pasteboard, {});
        QCOMPARE(capture.kind, Capture::Kind::text);
        // Copied again, it repeats the newest entry; with another ending it does not.
        ClipboardItem newest = textItem(stored);
        QCOMPARE(ClipboardRules::classify(pasteboard, { newest }).kind, Capture::Kind::nothing);
        pasteboard.copyFromElsewhere(textData(text + QLatin1Char('z')));
        QCOMPARE(ClipboardRules::classify(pasteboard, { newest }).kind, Capture::Kind::text);
    }

    void textIsMeasuredInUtf8()
    {
        const QString emoji = QString::fromUcs4(U"\U0001F600");
        QCOMPARE(ClipboardRules::utf8Size(QStringLiteral("abc"), 100), 3);
        QCOMPARE(ClipboardRules::utf8Size(QStringLiteral("\u00e9\u20ac"), 100), 5);
        QCOMPARE(ClipboardRules::utf8Size(emoji, 100), 4);
        QCOMPARE(ClipboardRules::utf8Size(QString(QChar(0xd800)), 100), 3); // written as U+FFFD
        const QString mixed = QStringLiteral("a\u00e9\u20ac") + emoji + QChar(0xdc00) + QStringLiteral("z");
        QCOMPARE(ClipboardRules::utf8Size(mixed, 100), 1 + 2 + 3 + 4 + 3 + 1);
        QCOMPARE(ClipboardRules::utf8Size(QStringLiteral("abcdef"), 4), 5); // over the limit: limit + 1
    }

    void aCutNeverSplitsACharacter()
    {
        // A four-byte character straddling the limit is left out whole.
        const QString emoji = QString::fromUcs4(U"\U0001F600");
        const QString text = QString(ClipboardRules::maximumTextBytes - 2, QLatin1Char('a')) + emoji + emoji;
        const QString stored = ClipboardRules::storedText(text);
        QCOMPARE(stored,
            QString(ClipboardRules::maximumTextBytes - 2, QLatin1Char('a'))
                + QStringLiteral("\u2026\n[Cut: 1,048,576 of 1,048,582 bytes copied are kept.]"));
        // One byte more room, and the first one fits.
        const QString roomier = QString(ClipboardRules::maximumTextBytes - 4, QLatin1Char('a')) + emoji + emoji;
        QVERIFY(ClipboardRules::storedText(roomier).startsWith(
            QString(ClipboardRules::maximumTextBytes - 4, QLatin1Char('a')) + emoji + QChar(0x2026)));
    }

    void bigPicturesAreScaledAndHugeOnesSkipped()
    {
        QCOMPARE(ClipboardRules::storedImageSize(QSize(3840, 2160)), QSize(3840, 2160));
        const QSize scaled = ClipboardRules::storedImageSize(QSize(7000, 4500));
        QVERIFY(qint64(scaled.width()) * scaled.height() <= ClipboardRules::maximumStoredImagePixels);
        QVERIFY(scaled.width() > 3550 && scaled.height() > 2280);
        QCOMPARE(qRound(scaled.width() * 4500.0 / 7000.0), scaled.height());
        QCOMPARE(ClipboardRules::storedImageSize(QSize(100000, 1)), QSize(100000, 1));
        QCOMPARE(ClipboardRules::storedImageSize(QSize(1'000'000, 10)).height(), 9);

        QCOMPARE(ClipboardRules::pngData(pngHeaderOnly(10000, 5000)), std::nullopt);
        QCOMPARE(ClipboardRules::pngData("not an image"), std::nullopt);
        QVERIFY(ClipboardRules::pngData(pngOf(Qt::red, QSize(640, 480))));
        const auto png = ClipboardRules::pngData(pngOf(Qt::red, QSize(4000, 2500)));
        QVERIFY(png);
        QImage stored;
        QVERIFY(stored.loadFromData(*png, "PNG"));
        QCOMPARE(stored.size(), ClipboardRules::storedImageSize(QSize(4000, 2500)));
        QCOMPARE(QColor(stored.pixel(10, 10)), QColor(Qt::red));
    }

    void historyFileKeepsControlCharactersAndLoneSurrogates()
    {
        QString odd = QStringLiteral("tab\tquote\"back\\slash\u0001\u001f\u007f end");
        odd += QChar(0xd800); // a lone high surrogate
        odd += QStringLiteral("\u00e9\u20ac") + QString::fromUcs4(U"\U0001F600");
        odd += QChar(0xdc00); // a lone low surrogate
        const QList<ClipboardItem> items = { textItem(odd), urlItem(QStringLiteral("https://example.org/\"x\"")) };
        const QByteArray json = encodeHistory(items);
        QCOMPARE(decodeHistory(json), items);
        // Whatever QJsonDocument reads, it reads the same way.
        QVERIFY(!QJsonDocument::fromJson(json).isNull());
        QCOMPARE(QJsonDocument::fromJson(json).array()[0].toObject().value("text").toString(), odd);
    }

    void evictionSparesTheEntryJustPlaced()
    {
        QList<ClipboardItem> items;
        for (int i = 0; i < 4; ++i)
            items.append(textItem(QString::number(i), i >= 2));
        // Everything older is pinned: the picture just placed at 1 stays.
        QCOMPARE(ClipboardRules::nextToEvict(items, 3, 1), std::nullopt);
        items[3].isPinned = false;
        QCOMPARE(ClipboardRules::nextToEvict(items, 3, 1), 3);
    }

    void latePicturesGoBelowLaterCopies()
    {
        QList<ClipboardItem> items = { textItem("c"), textItem("b"), textItem("a") };
        items[0].createdAt = 30;
        items[1].createdAt = 20;
        items[2].createdAt = 10;
        // Just above the entry that was the newest when the picture was copied.
        QCOMPARE(ClipboardRules::insertionIndex(items, items[1].id, 20), 1);
        QCOMPARE(ClipboardRules::insertionIndex(items, items[0].id, 30), 0);
        // The history was empty then: everything there now came later.
        QCOMPARE(ClipboardRules::insertionIndex(items, QUuid(), 5), 3);
        // That entry was deleted meanwhile: by time.
        QCOMPARE(ClipboardRules::insertionIndex(items, QUuid::createUuid(), 25), 1);
        QCOMPARE(ClipboardRules::insertionIndex({}, QUuid::createUuid(), 5), 0);
    }

    void leftoversAreRecognised()
    {
        const QString history = QStringLiteral("clipboard.json");
        QVERIFY(ClipboardRules::isLeftoverSaveFile(QStringLiteral("clipboard.json.a1B2c3"), history));
        QVERIFY(!ClipboardRules::isLeftoverSaveFile(QStringLiteral("clipboard.json"), history));
        QVERIFY(!ClipboardRules::isLeftoverSaveFile(QStringLiteral("clipboard.json.unreadable"), history));
        QVERIFY(!ClipboardRules::isLeftoverSaveFile(QStringLiteral("clipboard.json.a1B2c!"), history));
        QVERIFY(!ClipboardRules::isLeftoverSaveFile(QStringLiteral("notes.json.a1B2c3"), history));

        const QList<ClipboardItem> items
            = { { QUuid::createUuid(), 0, ClipboardKind::image, {}, {}, QStringLiteral("A.png"), false },
                  textItem("B.png") };
        QCOMPARE(ClipboardRules::unreferencedImages({ "A.png", "B.png", "A.png.x1y2z3" }, items),
            QStringList({ "B.png", "A.png.x1y2z3" }));
    }

    void titlesOfLongTextsStayShort()
    {
        const ClipboardItem big = textItem(QString(ClipboardRules::maximumTextBytes, QLatin1Char('w')));
        QCOMPARE(ClipboardRules::title(big).size(), ClipboardRules::maximumTitleLength);
        QCOMPARE(ClipboardRules::glanceSnippet({ big }).size(), ClipboardRules::maximumTitleLength);
    }

    void evictionTakesTheOldestUnpinned()
    {
        QList<ClipboardItem> items;
        for (int i = 0; i < 4; ++i)
            items.append(textItem(QString::number(i), i == 3));
        QCOMPARE(ClipboardRules::nextToEvict(items, 4), std::nullopt);
        QCOMPARE(ClipboardRules::nextToEvict(items, 3), 2);
        for (auto &item : items)
            item.isPinned = true;
        QCOMPARE(ClipboardRules::nextToEvict(items, 3), std::nullopt);
    }

    void glanceSnippets()
    {
        QCOMPARE(ClipboardRules::glanceSnippet({}), QStringLiteral("Clipboard"));
        QCOMPARE(ClipboardRules::glanceSnippet({ textItem("first line\nsecond line\n") }),
            QStringLiteral("first line second line"));
        ClipboardItem noText = textItem("x");
        noText.text.reset();
        QCOMPARE(ClipboardRules::glanceSnippet({ noText }), QStringLiteral("Text"));
        QCOMPARE(ClipboardRules::glanceSnippet({ urlItem("https://example.org/x") }),
            QStringLiteral("https://example.org/x"));
        ClipboardItem noUrl = urlItem("x");
        noUrl.url.reset();
        QCOMPARE(ClipboardRules::glanceSnippet({ noUrl }), QStringLiteral("URL"));
        QCOMPARE(ClipboardRules::glanceSnippet({ { QUuid::createUuid(), 0, ClipboardKind::image, {}, {}, {}, false } }),
            QStringLiteral("Image"));
    }

    void imageNamesMustStayInsideTheFolder()
    {
        QVERIFY(ClipboardRules::isPlainFileName(QStringLiteral("ABC.png")));
        QVERIFY(!ClipboardRules::isPlainFileName(QStringLiteral("../clipboard.json")));
        QVERIFY(!ClipboardRules::isPlainFileName(QStringLiteral("..")));
        QVERIFY(!ClipboardRules::isPlainFileName(QString()));
    }
};

QTEST_MAIN(TestClipboardRules)
#include "test_clipboard_rules.moc"
