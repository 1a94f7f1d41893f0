// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_rules.h"
#include "modules/clipboard/clipboard_store.h"
#include "tests/modules/clipboard/clipboard_test_support.h"
#include "tests/support/fake_pasteboard.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

QStringList texts(const ClipboardStore &store)
{
    QStringList result;
    for (const ClipboardItem &item : store.items())
        result << item.text.value_or(item.url.value_or(item.imageFileName.value_or(QStringLiteral("?"))));
    return result;
}

QStringList imageFiles(const ClipboardStore &store)
{
    return QDir(store.imagesDirectory()).entryList(QDir::Files, QDir::Name);
}

struct Fixture {
    explicit Fixture(int capacity = 50, bool announce = true)
        : pasteboard(announce)
        , store(pasteboard, folder.path(), capacity, true)
    { }
    void copy(const QString &text) { pasteboard.copyFromElsewhere(textData(text)); }
    // Pictures are converted off the main thread: true once the entry is there.
    bool copyImage(const QColor &color, QSize size = QSize(4, 4))
    {
        const qsizetype before = store.items().size();
        auto *data = new QMimeData;
        data->setData(QStringLiteral("image/png"), pngOf(color, size));
        pasteboard.copyFromElsewhere(data);
        return QTest::qWaitFor([&] { return store.items().size() > before; }, 10000);
    }
    // The history file once every write handed over has finished.
    QJsonArray disk()
    {
        store.flush();
        return historyOnDisk(store.historyPath());
    }

    QTemporaryDir folder;
    FakePasteboard pasteboard;
    ClipboardStore store;
};

} // namespace

class TestClipboardStore : public QObject
{
    Q_OBJECT

private slots:
    void sameTextTwiceIsOneEntryButABAIsThree()
    {
        Fixture f;
        f.copy("A");
        f.copy("A");
        QCOMPARE(texts(f.store), QStringList({ "A" }));
        f.copy("B");
        f.copy("A");
        QCOMPARE(texts(f.store), QStringList({ "A", "B", "A" }));
    }

    void paddedTextIsTrimmedAndCapturedAgain()
    {
        Fixture f;
        f.copy("  hello  ");
        f.copy("  hello  ");
        QCOMPARE(texts(f.store), QStringList({ "hello", "hello" }));
    }

    void whiteSpaceAloneIsIgnoredUnlessAnImageComesWithIt()
    {
        Fixture f;
        f.copy(" \n ");
        QVERIFY(f.store.items().isEmpty());
        auto *data = textData(QStringLiteral("\n\n"));
        data->setData(QStringLiteral("image/png"), pngOf(Qt::yellow));
        f.pasteboard.copyFromElsewhere(data);
        QTRY_COMPARE(f.store.items().size(), 1);
        QCOMPARE(f.store.items()[0].kind, ClipboardKind::image);
    }

    void linkWithTextIsOneLinkAndFilesAreNeverLinks()
    {
        Fixture f;
        auto *link = textData(QStringLiteral("Example Domain"));
        link->setUrls({ QUrl(QStringLiteral("https://example.org/")) });
        f.pasteboard.copyFromElsewhere(link);
        QCOMPARE(f.store.items().size(), 1);
        QCOMPARE(f.store.items()[0].kind, ClipboardKind::url);
        QCOMPARE(f.store.items()[0].url, QStringLiteral("https://example.org/"));
        QCOMPARE(f.store.items()[0].text, std::nullopt);

        auto *file = textData(QStringLiteral("/home/me/notes.txt"));
        file->setUrls({ QUrl::fromLocalFile(QStringLiteral("/home/me/notes.txt")) });
        f.pasteboard.copyFromElsewhere(file);
        QCOMPARE(f.store.items()[0].kind, ClipboardKind::text);
        QCOMPARE(f.store.items()[0].text, QStringLiteral("/home/me/notes.txt"));
    }

    void capitalSchemeIsNotALink()
    {
        Fixture f;
        f.pasteboard.offerFromElsewhere({ { QStringLiteral("text/uri-list"), "HTTP://EXAMPLE.ORG\r\n" },
            { QStringLiteral("text/plain"), "HTTP://EXAMPLE.ORG" } });
        QCOMPARE(f.store.items()[0].kind, ClipboardKind::text);
    }

    void fullHistoryEvictsTheOldestAndItsImage()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::red));
        const QString oldestImage = *f.store.items()[0].imageFileName;
        QCOMPARE(imageFiles(f.store), QStringList({ oldestImage }));
        for (int i = 1; i < 50; ++i)
            f.copy(QString::number(i));
        QCOMPARE(f.store.items().size(), 50);
        f.copy(QStringLiteral("fifty-one"));
        QCOMPARE(f.store.items().size(), 50);
        QCOMPARE(f.store.items().last().text, QStringLiteral("1"));
        QVERIFY(imageFiles(f.store).isEmpty());
        QCOMPARE(f.disk().size(), 50);
    }

    void fiftyPinnedEntriesAreNeverEvicted()
    {
        Fixture f;
        for (int i = 0; i < 50; ++i) {
            f.copy(QString::number(i));
            f.store.togglePin(f.store.items()[0].id);
        }
        f.copy(QStringLiteral("one more"));
        QCOMPARE(f.store.items().size(), 51);
    }

    void pinnedEntriesKeepTheirPlaces()
    {
        Fixture f(3);
        f.copy("a");
        f.copy("b");
        f.copy("c");
        f.store.togglePin(f.store.items()[2].id); // "a", the oldest
        f.copy("d");
        QCOMPARE(texts(f.store), QStringList({ "d", "c", "a" }));
    }

    void pinTogglesInPlaceAndIsSavedEachTime()
    {
        Fixture f;
        f.copy("a");
        f.copy("b");
        const QUuid id = f.store.items()[1].id;
        f.store.togglePin(id);
        QCOMPARE(f.store.items()[1].isPinned, true);
        QCOMPARE(f.disk()[1].toObject().value("isPinned").toBool(), true);
        f.store.togglePin(id);
        QCOMPARE(f.store.items()[1].isPinned, false);
        QCOMPARE(f.disk()[1].toObject().value("isPinned").toBool(), false);
        QCOMPARE(texts(f.store), QStringList({ "b", "a" }));
        f.store.togglePin(QUuid::createUuid()); // unknown: nothing
    }

    void contentPresentAtStartIsNotCaptured()
    {
        QTemporaryDir folder;
        FakePasteboard pasteboard;
        pasteboard.copyFromElsewhere(textData(QStringLiteral("before")));
        ClipboardStore store(pasteboard, folder.path(), 50, true);
        QVERIFY(store.items().isEmpty());
        pasteboard.copyFromElsewhere(textData(QStringLiteral("after")));
        QCOMPARE(texts(store), QStringList({ "after" }));
    }

    void copyBackIsNotCapturedAgain()
    {
        Fixture f;
        f.copy("one");
        f.copy("two");
        const ClipboardItem older = f.store.items()[1];
        f.store.copyBack(older);
        QCOMPARE(f.pasteboard.text(), QStringLiteral("one"));
        QCOMPARE(texts(f.store), QStringList({ "two", "one" }));
        QCOMPARE(f.store.items()[1].createdAt, older.createdAt);
    }

    void copyBackOfLinksAndImages()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::green));
        const ClipboardItem image = f.store.items()[0];
        f.copy("text");
        f.store.copyBack(image);
        QVERIFY(f.pasteboard.types().contains(QStringLiteral("image/png")));
        QImage pasted;
        QVERIFY(pasted.loadFromData(f.pasteboard.data(QStringLiteral("image/png"))));
        QCOMPARE(QColor(pasted.pixel(0, 0)), QColor(Qt::green));

        ClipboardItem link { QUuid::createUuid(), 0, ClipboardKind::url, {}, QStringLiteral("https://example.org/"), {},
            false };
        f.store.copyBack(link);
        QCOMPARE(f.pasteboard.text(), QStringLiteral("https://example.org/"));
        QCOMPARE(f.pasteboard.urls(), QList<QUrl>({ QUrl(QStringLiteral("https://example.org/")) }));

        QFile::remove(QDir(f.store.imagesDirectory()).filePath(*image.imageFileName));
        f.store.copyBack(image);
        QVERIFY(f.pasteboard.types().isEmpty()); // cleared, nothing to put back
        QCOMPARE(f.store.items().size(), 2);
    }

    void deleteRemovesTheEntryAndItsImage()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::blue));
        f.copy("keep");
        QCOMPARE(imageFiles(f.store).size(), 1);
        QVERIFY(f.store.image(f.store.items()[1]));
        f.store.remove(f.store.items()[1].id);
        QCOMPARE(texts(f.store), QStringList({ "keep" }));
        QVERIFY(imageFiles(f.store).isEmpty());
        QCOMPARE(f.disk().size(), 1);
    }

    void imageFilesAreNamedByUpperCaseUuids()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::red));
        const QString name = *f.store.items()[0].imageFileName;
        QCOMPARE(name.size(), 40);
        QVERIFY(name.endsWith(QLatin1String(".png")));
        QCOMPARE(name, name.toUpper().replace(QLatin1String(".PNG"), QLatin1String(".png")));
        QVERIFY(!QUuid::fromString(name.left(36)).isNull());
        QVERIFY(name.left(36) != f.store.items()[0].id.toString(QUuid::WithoutBraces).toUpper());
    }

    void historyIsReloadedAtTheNextStart()
    {
        QTemporaryDir folder;
        FakePasteboard pasteboard;
        {
            ClipboardStore store(pasteboard, folder.path(), 50, true);
            pasteboard.copyFromElsewhere(textData(QStringLiteral("kept")));
            store.togglePin(store.items()[0].id);
        }
        ClipboardStore store(pasteboard, folder.path(), 50, true);
        QCOMPARE(texts(store), QStringList({ "kept" }));
        QVERIFY(store.items()[0].isPinned);
    }

    void historyWithAnEntryWithoutIsPinnedStartsEmptyAndIsKeptAside()
    {
        QTemporaryDir folder;
        const QByteArray broken
            = R"([{"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":1,"kind":"text","text":"old"}])";
        {
            QFile file(QDir(folder.path()).filePath("clipboard.json"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(broken);
        }
        FakePasteboard pasteboard;
        ClipboardStore store(pasteboard, folder.path(), 50, true);
        QVERIFY(store.items().isEmpty());
        QFile untouched(store.historyPath());
        QVERIFY(untouched.open(QIODevice::ReadOnly));
        QCOMPARE(untouched.readAll(), broken);

        pasteboard.copyFromElsewhere(textData(QStringLiteral("new")));
        QFile aside(store.historyPath() + QStringLiteral(".unreadable"));
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), broken);
        store.flush();
        QCOMPARE(historyOnDisk(store.historyPath()).size(), 1);

        pasteboard.copyFromElsewhere(textData(QStringLiteral("newer")));
        store.flush();
        QVERIFY(aside.seek(0));
        QCOMPARE(aside.readAll(), broken); // one generation: not replaced by good saves
    }

    void secretsAreNeverCaptured()
    {
        Fixture f;
        auto *secret = textData(QStringLiteral("correct horse battery staple"));
        secret->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
        f.pasteboard.copyFromElsewhere(secret);
        QVERIFY(f.store.items().isEmpty());
        QVERIFY(!QFile::exists(f.store.historyPath()));
    }

    void filesAreOwnerOnly()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::red));
        f.store.flush();
        const auto folderPermissions = QFileInfo(f.store.storageDirectory()).permissions() & 0x7777;
        QCOMPARE(folderPermissions,
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser
                | QFile::ExeUser);
        QCOMPARE(QFileInfo(f.store.imagesDirectory()).permissions() & 0x7777, folderPermissions);
        const auto filePermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFileInfo(f.store.historyPath()).permissions() & 0x7777, filePermissions);
        const QString image = QDir(f.store.imagesDirectory()).filePath(imageFiles(f.store).first());
        QCOMPARE(QFileInfo(image).permissions() & 0x7777, filePermissions);
    }

    void imageOfferedAsTiffAndPngIsStoredFromTheTiff()
    {
        Fixture f;
        auto *data = new QMimeData;
        data->setData(QStringLiteral("image/png"), pngOf(Qt::blue, QSize(6, 3)));
        data->setData(QStringLiteral("image/tiff"), imageOf(Qt::red, "TIFF", QSize(5, 2)));
        f.pasteboard.copyFromElsewhere(data);
        QTRY_COMPARE(f.store.items().size(), 1);
        const QImage stored(QDir(f.store.imagesDirectory()).filePath(*f.store.items()[0].imageFileName), "PNG");
        QCOMPARE(stored.size(), QSize(5, 2));
        QCOMPARE(QColor(stored.pixel(0, 0)), QColor(Qt::red));
    }

    void undecodableImageAddsNothing()
    {
        QTemporaryDir folder;
        FakePasteboard pasteboard;
        {
            ClipboardStore store(pasteboard, folder.path(), 50, true);
            auto *data = new QMimeData;
            data->setData(QStringLiteral("image/png"), "\x89PNG garbage");
            pasteboard.copyFromElsewhere(data);
        } // the picture in hand is finished before the store goes
        QVERIFY(!QFile::exists(QDir(folder.path()).filePath("clipboard.json")));
        QVERIFY(QDir(QDir(folder.path()).filePath("clipboard-images")).isEmpty());
    }

    void withAnnouncementsNothingPolls()
    {
        Fixture f;
        QVERIFY(!f.store.isPolling());
    }

    void withoutAnnouncementsTheHalfSecondPollCaptures()
    {
        Fixture f(50, false);
        QVERIFY(f.store.isPolling());
        f.copy("polled");
        QVERIFY(f.store.items().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(texts(f.store), QStringList({ "polled" }), 2000);
    }

    void glanceSnippetFollowsTheNewestEntry()
    {
        Fixture f;
        QCOMPARE(f.store.glanceSnippet(), QStringLiteral("Clipboard"));
        f.copy("line one\nline two");
        QCOMPARE(f.store.glanceSnippet(), QStringLiteral("line one line two"));
    }

    void defaultFolderIsTheUsersDataFolder()
    {
        QCOMPARE(ClipboardStore::defaultDirectory(),
            QDir(qEnvironmentVariable("XDG_DATA_HOME")).filePath(QStringLiteral("Ledgewise")));
    }

    void folderThatCannotBeCreatedStillRuns()
    {
        QTemporaryDir parent;
        QFile blocker(parent.filePath("file"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        FakePasteboard pasteboard;
        ClipboardStore store(pasteboard, parent.filePath("file/Ledgewise"), 50, true);
        pasteboard.copyFromElsewhere(textData(QStringLiteral("in memory")));
        QCOMPARE(texts(store), QStringList({ "in memory" }));
    }

    void aMebibyteOfTextIsKeptWholeOnDisk()
    {
        Fixture f;
        const QString text = QString(ClipboardRules::maximumTextBytes - 1, QLatin1Char('m')) + QLatin1Char('!');
        f.copy(text);
        QCOMPARE(f.disk().size(), 1);
        QCOMPARE(f.disk()[0].toObject().value("text").toString(), text);
    }

    void fourMebibytesOfTextAreKeptCutWithANote()
    {
        Fixture f;
        QString text(4 * ClipboardRules::maximumTextBytes, QLatin1Char('f'));
        text[0] = QLatin1Char('F');
        f.copy(text);
        const QString kept = QLatin1Char('F') + QString(ClipboardRules::maximumTextBytes - 1, QLatin1Char('f'))
            + QStringLiteral("\u2026\n[Cut: 1,048,576 of 4,194,304 bytes copied are kept.]");
        QCOMPARE(f.disk()[0].toObject().value("text").toString(), kept);
        // The same copy again is a repeat; copying the entry back says it was cut.
        f.copy(text);
        QCOMPARE(f.store.items().size(), 1);
        f.store.copyBack(f.store.items()[0]);
        QCOMPARE(f.pasteboard.text(), kept);
        QVERIFY(QFileInfo(f.store.historyPath()).size() < 2 * ClipboardRules::maximumTextBytes);
    }

    void bigPictureIsStoredScaledDown()
    {
        Fixture f;
        QVERIFY(f.copyImage(Qt::magenta, QSize(5000, 3000)));
        const QImage stored(QDir(f.store.imagesDirectory()).filePath(*f.store.items()[0].imageFileName), "PNG");
        QCOMPARE(stored.size(), ClipboardRules::storedImageSize(QSize(5000, 3000)));
        QVERIFY(qint64(stored.width()) * stored.height() <= ClipboardRules::maximumStoredImagePixels);
        QCOMPARE(QColor(stored.pixel(100, 100)), QColor(Qt::magenta));
    }

    void pictureCopiedBeforeATextStaysBelowIt()
    {
        Fixture f;
        f.copy("before");
        auto *data = new QMimeData;
        data->setData(QStringLiteral("image/png"), pngOf(Qt::red, QSize(3000, 2000)));
        f.pasteboard.copyFromElsewhere(data);
        f.copy("after"); // while the picture is still being converted
        QTRY_COMPARE(f.store.items().size(), 3);
        QCOMPARE(texts(f.store)[0], QStringLiteral("after"));
        QCOMPARE(f.store.items()[1].kind, ClipboardKind::image);
        QCOMPARE(texts(f.store)[2], QStringLiteral("before"));
        QCOMPARE(f.disk()[1].toObject().value("kind").toString(), QStringLiteral("image"));
    }

    void historyIsWrittenOffTheMainThread()
    {
        Fixture f;
        QSignalSpy saved(&f.store, &ClipboardStore::historySaved);
        f.copy("written later");
        // The capture returns before the file is written; the write follows by itself.
        QCOMPARE(saved.count(), 0);
        QTRY_COMPARE(historyOnDisk(f.store.historyPath()).size(), 1);
        QCOMPARE(historyOnDisk(f.store.historyPath())[0].toObject().value("text").toString(),
            QStringLiteral("written later"));
        QTRY_VERIFY(saved.count() >= 1);
        // Replaced atomically: no temporary file is left beside it.
        QCOMPARE(QDir(f.store.storageDirectory()).entryList(QDir::Files), QStringList({ "clipboard.json" }));
    }

    void quittingRightAfterACaptureKeepsIt()
    {
        QTemporaryDir folder;
        FakePasteboard pasteboard;
        {
            ClipboardStore store(pasteboard, folder.path(), 50, true);
            for (int i = 0; i < 20; ++i)
                pasteboard.copyFromElsewhere(textData(QString(300'000, QLatin1Char('a' + i))));
            auto *data = new QMimeData;
            data->setData(QStringLiteral("image/png"), pngOf(Qt::blue, QSize(2000, 2000)));
            pasteboard.copyFromElsewhere(data);
            pasteboard.copyFromElsewhere(textData(QStringLiteral("the last copy")));
        }
        const QJsonArray disk = historyOnDisk(QDir(folder.path()).filePath("clipboard.json"));
        QCOMPARE(disk.size(), 22);
        QCOMPARE(disk[0].toObject().value("text").toString(), QStringLiteral("the last copy"));
        // The picture in hand when the store went was finished and kept.
        QCOMPARE(disk[1].toObject().value("kind").toString(), QStringLiteral("image"));
        QVERIFY(QFile::exists(
            QDir(folder.path()).filePath("clipboard-images/" + disk[1].toObject().value("imageFileName").toString())));
    }

    void historyWeMayNotReadIsNeverOverwritten()
    {
        if (::geteuid() == 0)
            QSKIP("running as root, who may read any file: see historyWithAReadErrorIsNeverOverwritten");
        QTemporaryDir folder;
        const QString path = QDir(folder.path()).filePath("clipboard.json");
        const QByteArray history
            = encodeHistory({ { QUuid::createUuid(), 1, ClipboardKind::text, QStringLiteral("old"), {}, {}, true } });
        writeFile(path, history);
        QVERIFY(QFile::setPermissions(path, {}));
        expectNotWritten(folder.path(), path);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), history);
    }

    void historyWithAReadErrorIsNeverOverwritten()
    {
        // Reading this process's memory from address 0 fails with EIO, for root too.
        QTemporaryDir folder;
        const QString path = QDir(folder.path()).filePath("clipboard.json");
        QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), path));
        expectNotWritten(folder.path(), path);
        QCOMPARE(QFileInfo(path).symLinkTarget(), QStringLiteral("/proc/self/mem"));
    }

    void historyThatIsAPipeNeitherBlocksNorIsReplaced()
    {
        QTemporaryDir folder;
        const QString path = QDir(folder.path()).filePath("clipboard.json");
        QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        expectNotWritten(folder.path(), path);
        QVERIFY(QFileInfo(path).isFile() == false && QFileInfo::exists(path));
    }

    void leftoversAndPicturesNoEntryNamesAreRemovedAtStart()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        const QString kept = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
        const QString orphan = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
        writeFile(dir.filePath("clipboard.json"),
            encodeHistory({ { QUuid::createUuid(), 1, ClipboardKind::image, {}, {}, kept, false } }));
        writeFile(dir.filePath("clipboard-images/" + kept), pngOf(Qt::red));
        writeFile(dir.filePath("clipboard-images/" + orphan), pngOf(Qt::blue));
        writeFile(dir.filePath("clipboard-images/" + kept + ".Xy12Zw"), "half a picture");
        writeFile(dir.filePath("clipboard.json.Ab12Cd"), "[{\"half");
        writeFile(dir.filePath("clipboard.json.unreadable"), "kept aside earlier");
        writeFile(dir.filePath("notes.txt"), "not ours");

        FakePasteboard pasteboard;
        ClipboardStore store(pasteboard, folder.path(), 50, true);
        QCOMPARE(store.items().size(), 1);
        QCOMPARE(QDir(store.imagesDirectory()).entryList(QDir::Files), QStringList({ kept }));
        QCOMPARE(dir.entryList(QDir::Files, QDir::Name),
            QStringList({ "clipboard.json", "clipboard.json.unreadable", "notes.txt" }));
    }

    void picturesOfAHistoryThatDidNotDecodeAreRemovedAtStart()
    {
        QTemporaryDir folder;
        const QDir dir(folder.path());
        const QString picture = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
        const QByteArray broken = "[{\"kind\":\"image\",\"imageFileName\":\"" + picture.toUtf8() + "\"}]";
        writeFile(dir.filePath("clipboard.json"), broken);
        writeFile(dir.filePath("clipboard-images/" + picture), pngOf(Qt::red));
        FakePasteboard pasteboard;
        ClipboardStore store(pasteboard, folder.path(), 50, true);
        QVERIFY(store.items().isEmpty());
        QVERIFY(QDir(store.imagesDirectory()).isEmpty());
        // The file itself is left as it is until the first save sets it aside.
        QFile file(store.historyPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), broken);
    }

private:
    // A store over a history it cannot read captures in memory only: the file stays,
    // nothing is set aside, nothing else is written beside it.
    void expectNotWritten(const QString &folder, const QString &path)
    {
        const QStringList before = QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        FakePasteboard pasteboard;
        {
            ClipboardStore store(pasteboard, folder, 50, true);
            QVERIFY(!store.writesHistory());
            QVERIFY(store.items().isEmpty());
            pasteboard.copyFromElsewhere(textData(QStringLiteral("in memory only")));
            QCOMPARE(texts(store), QStringList({ "in memory only" }));
            store.togglePin(store.items()[0].id);
            store.flush();
        }
        QVERIFY(QFileInfo::exists(path) || QFileInfo(path).isSymLink());
        QStringList after = QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        after.removeOne(QStringLiteral("clipboard-images")); // made at start, empty
        QCOMPARE(after, before);
    }

    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
};

QTEST_MAIN(TestClipboardStore)
#include "test_clipboard_store.moc"
