// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_rules.h"
#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "platform/clipboard/x11_selection_reader.h"
#include "tests/modules/clipboard/clipboard_test_support.h"
#include "tests/support/x11_tools.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// Other applications copying: xclip for one type, clipboard_offer for several. Each
// copy starts a new owner and the one before leaves by itself once it has lost the
// clipboard. Nobody is killed while a test runs: the owner going away is a clipboard
// change of its own, and would blur which change the store looked at.
class OtherApplications
{
public:
    ~OtherApplications()
    {
        for (const auto &process : m_processes) {
            process->kill();
            process->waitForFinished();
        }
    }

    void copy(const QByteArray &bytes, const QString &target = QString())
    {
        QStringList arguments = { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i") };
        if (!target.isEmpty())
            arguments << QStringLiteral("-t") << target;
        QProcess *xclip = start(QStringLiteral("xclip"), arguments);
        xclip->write(bytes);
        xclip->closeWriteChannel();
    }

    // Several types at once (TYPE=VALUE, or TYPE<FILE for bytes from a file); true
    // once the other application owns the clipboard.
    bool offer(const QStringList &types)
    {
        QProcess *offer = start(qEnvironmentVariable("CLIPBOARD_OFFER"), types);
        return offer->waitForReadyRead(10000) && offer->readLine().trimmed() == "ready";
    }

private:
    QProcess *start(const QString &program, const QStringList &arguments)
    {
        std::erase_if(m_processes, [](const auto &process) { return process->state() == QProcess::NotRunning; });
        auto process = std::make_unique<QProcess>();
        process->start(program, arguments);
        process->waitForStarted();
        m_processes.push_back(std::move(process));
        return m_processes.back().get();
    }

    std::vector<std::unique_ptr<QProcess>> m_processes;
};

QString valueOf(const ClipboardItem &item)
{
    return item.text.value_or(item.url.value_or(QStringLiteral("<image>")));
}

QStringList texts(const ClipboardStore &store)
{
    QStringList result;
    for (const ClipboardItem &item : store.items())
        result << valueOf(item);
    return result;
}

// The history file once its writes are done, read back as the store's entries would
// read: kind, then value.
QStringList onDisk(ClipboardStore &store)
{
    store.flush();
    QStringList result;
    for (const QJsonValue &entry : historyOnDisk(store.historyPath())) {
        const QJsonObject object = entry.toObject();
        const QString kind = object.value("kind").toString();
        const QString value = kind == QLatin1String("text") ? object.value("text").toString()
            : kind == QLatin1String("url")                  ? object.value("url").toString()
                                                            : object.value("imageFileName").toString();
        result << kind + QLatin1Char(':') + value;
    }
    return result;
}

ClipboardItem seededText(const QString &text, double createdAt, bool pinned = false)
{
    return { QUuid::createUuid(), createdAt, ClipboardKind::text, text, std::nullopt, std::nullopt, pinned };
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// One store on the real clipboard, and what it has looked at.
struct Watched {
    Watched(const QString &folder, OtherApplications &others)
        : store(pasteboard, folder, 50, true)
        , checked(&store, &ClipboardStore::pasteboardChecked)
        , others(others)
    { }

    // Another application copies; true once the store has looked at that very copy.
    bool copy(const QByteArray &bytes, const QString &target = QString())
    {
        const qsizetype before = checked.count();
        others.copy(bytes, target);
        return QTest::qWaitFor([&] { return checked.count() > before; }, 10000);
    }
    bool offer(const QStringList &types)
    {
        const qsizetype before = checked.count();
        return others.offer(types) && QTest::qWaitFor([&] { return checked.count() > before; }, 10000);
    }

    QtPasteboard pasteboard;
    ClipboardStore store;
    QSignalSpy checked;
    OtherApplications &others;
};

} // namespace

class TestClipboardX11 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_files = std::make_unique<QTemporaryDir>();
    }

    void contentAtStartIsNotCapturedButTheNextCopyIs()
    {
        QtPasteboard pasteboard;
        const qint64 before = pasteboard.changeCount();
        QVERIFY(m_others.offer({ QStringLiteral("text/plain=already there") }));
        // The copy has reached this program before the store starts.
        QTRY_VERIFY(pasteboard.changeCount() > before);
        ClipboardStore store(pasteboard, m_folder->path(), 50, true);
        QSignalSpy checked(&store, &ClipboardStore::pasteboardChecked);
        QVERIFY(!store.isPolling());
        QTest::qWait(300); // nothing may arrive: the start content is not a copy
        QCOMPARE(checked.count(), 0);
        QVERIFY(store.items().isEmpty());
        QVERIFY(!QFile::exists(store.historyPath()));

        m_others.copy("copied in another application");
        QTRY_COMPARE(texts(store), QStringList({ "copied in another application" }));
        QCOMPARE(onDisk(store), QStringList({ "text:copied in another application" }));
    }

    void sameTextTwiceIsOneEntry()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("A"));
        QVERIFY(w.copy("A"));
        QCOMPARE(texts(w.store), QStringList({ "A" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:A" }));
    }

    void aThenBThenAIsThreeEntries()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("A"));
        QVERIFY(w.copy("B"));
        QVERIFY(w.copy("A"));
        QCOMPARE(texts(w.store), QStringList({ "A", "B", "A" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:A", "text:B", "text:A" }));
    }

    void paddedTextTwiceIsTwoTrimmedEntries()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("  hello  "));
        QVERIFY(w.copy("  hello  "));
        QCOMPARE(texts(w.store), QStringList({ "hello", "hello" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:hello", "text:hello" }));
    }

    void whiteSpaceAloneIsNotCaptured()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("  \n\t  \n"));
        QVERIFY(w.store.items().isEmpty());
        QVERIFY(!QFile::exists(w.store.historyPath()));
    }

    void whiteSpaceWithAPictureIsThePicture()
    {
        Watched w(m_folder->path(), m_others);
        const QString png = m_files->filePath("yellow.png");
        writeFile(png, pngOf(Qt::yellow, QSize(7, 3)));
        QVERIFY(w.offer({ QStringLiteral("text/plain=\n \n"), QStringLiteral("image/png<") + png }));
        QTRY_COMPARE(w.store.items().size(), 1); // pictures are converted off the main thread
        const ClipboardItem image = w.store.items()[0];
        QCOMPARE(image.kind, ClipboardKind::image);
        QCOMPARE(QImage(QDir(w.store.imagesDirectory()).filePath(*image.imageFileName)).size(), QSize(7, 3));
        QCOMPARE(onDisk(w.store), QStringList({ "image:" + *image.imageFileName }));
    }

    void linkThatAlsoCarriesTextIsOneLink()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.offer({ QStringLiteral("text/uri-list=https://example.org/page\r\n"),
            QStringLiteral("text/plain=Example Domain") }));
        QCOMPARE(w.store.items().size(), 1);
        QCOMPARE(w.store.items()[0].kind, ClipboardKind::url);
        QCOMPARE(w.store.items()[0].url, QStringLiteral("https://example.org/page"));
        QCOMPARE(onDisk(w.store), QStringList({ "url:https://example.org/page" }));
        w.store.flush();
        QVERIFY(!historyOnDisk(w.store.historyPath())[0].toObject().contains("text"));
    }

    void fileUrlIsNeverALink()
    {
        Watched w(m_folder->path(), m_others);
        // Only the file's URL: not a link, no text, no picture.
        QVERIFY(w.copy("file:///home/me/notes.txt\r\n", QStringLiteral("text/uri-list")));
        QVERIFY(w.store.items().isEmpty());
        QVERIFY(!QFile::exists(w.store.historyPath()));

        // With its path as text, as a file browser offers it: the text.
        QVERIFY(w.offer({ QStringLiteral("text/uri-list=file:///home/me/notes.txt\r\n"),
            QStringLiteral("text/plain=/home/me/notes.txt") }));
        QCOMPARE(texts(w.store), QStringList({ "/home/me/notes.txt" }));
        QCOMPARE(w.store.items()[0].kind, ClipboardKind::text);
        QCOMPARE(onDisk(w.store), QStringList({ "text:/home/me/notes.txt" }));
        QVERIFY(!historyOnDisk(w.store.historyPath())[0].toObject().contains("url"));
    }

    void capitalSchemeIsTextNotALink()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.offer({ QStringLiteral("text/uri-list=HTTP://EXAMPLE.ORG/\r\n"),
            QStringLiteral("text/plain=HTTP://EXAMPLE.ORG/") }));
        QCOMPARE(w.store.items().size(), 1);
        QCOMPARE(w.store.items()[0].kind, ClipboardKind::text);
        QCOMPARE(w.store.items()[0].text, QStringLiteral("HTTP://EXAMPLE.ORG/"));
        QCOMPARE(onDisk(w.store), QStringList({ "text:HTTP://EXAMPLE.ORG/" }));
    }

    void linksAndPicturesFromXclip()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("https://example.org/page\r\n", QStringLiteral("text/uri-list")));
        QCOMPARE(w.store.items().size(), 1);
        QCOMPARE(w.store.items()[0].kind, ClipboardKind::url);
        QCOMPARE(w.store.items()[0].url, QStringLiteral("https://example.org/page"));

        QVERIFY(w.copy(pngOf(Qt::cyan, QSize(30, 20)), QStringLiteral("image/png")));
        QTRY_COMPARE(w.store.items().size(), 2);
        const ClipboardItem image = w.store.items()[0];
        QCOMPARE(image.kind, ClipboardKind::image);
        const QString file = QDir(w.store.imagesDirectory()).filePath(*image.imageFileName);
        QCOMPARE(QImage(file).size(), QSize(30, 20));
        QCOMPARE(onDisk(w.store), QStringList({ "image:" + *image.imageFileName, "url:https://example.org/page" }));
    }

    void pictureOfferedAsTiffAndPngIsTakenFromTheTiff()
    {
        Watched w(m_folder->path(), m_others);
        const QString tiff = m_files->filePath("red.tiff");
        const QString png = m_files->filePath("blue.png");
        writeFile(tiff, imageOf(Qt::red, "TIFF", QSize(5, 2)));
        writeFile(png, pngOf(Qt::blue, QSize(6, 3)));
        QVERIFY(w.offer({ QStringLiteral("image/png<") + png, QStringLiteral("image/tiff<") + tiff }));
        QTRY_COMPARE(w.store.items().size(), 1);
        const QString stored = QDir(w.store.imagesDirectory()).filePath(*w.store.items()[0].imageFileName);
        const QImage image(stored, "PNG");
        QCOMPARE(image.size(), QSize(5, 2));
        QCOMPARE(QColor(image.pixel(0, 0)), QColor(Qt::red));
    }

    void fullHistoryEvictsTheOldestAndDeletesItsPicture()
    {
        const QString picture = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
        const QString picturePath = QDir(m_folder->path()).filePath(QStringLiteral("clipboard-images/") + picture);
        writeFile(picturePath, pngOf(Qt::red));
        QList<ClipboardItem> seeded;
        for (int i = 49; i >= 1; --i)
            seeded.append(seededText(QStringLiteral("entry %1").arg(i), i));
        seeded.append({ QUuid::createUuid(), 0, ClipboardKind::image, std::nullopt, std::nullopt, picture, false });
        writeFile(QDir(m_folder->path()).filePath("clipboard.json"), encodeHistory(seeded));

        Watched w(m_folder->path(), m_others);
        QCOMPARE(w.store.items().size(), 50);
        QVERIFY(w.copy("fifty-first"));
        QCOMPARE(w.store.items().size(), 50);
        QCOMPARE(w.store.items().first().text, QStringLiteral("fifty-first"));
        QCOMPARE(w.store.items().last().text, QStringLiteral("entry 1"));
        QVERIFY(!QFile::exists(picturePath));
        const QStringList disk = onDisk(w.store);
        QCOMPARE(disk.size(), 50);
        QCOMPARE(disk.first(), QStringLiteral("text:fifty-first"));
        QCOMPARE(disk.last(), QStringLiteral("text:entry 1"));
    }

    void fiftyPinnedEntriesPlusOneAreFiftyOne()
    {
        QList<ClipboardItem> seeded;
        for (int i = 50; i >= 1; --i)
            seeded.append(seededText(QStringLiteral("pinned %1").arg(i), i, true));
        writeFile(QDir(m_folder->path()).filePath("clipboard.json"), encodeHistory(seeded));

        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("one more"));
        QCOMPARE(w.store.items().size(), 51);
        w.store.flush();
        const QJsonArray disk = historyOnDisk(w.store.historyPath());
        QCOMPARE(disk.size(), 51);
        QCOMPARE(disk[0].toObject().value("text").toString(), QStringLiteral("one more"));
        QCOMPARE(disk[0].toObject().value("isPinned").toBool(), false);
        for (qsizetype i = 1; i < disk.size(); ++i)
            QCOMPARE(disk[i].toObject().value("isPinned").toBool(), true);
    }

    void pinThenUnpinIsSavedEachTimeInPlace()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("a"));
        QVERIFY(w.copy("b"));
        const QUuid id = w.store.items()[1].id;
        auto pinnedOnDisk = [&] {
            w.store.flush();
            QList<bool> result;
            for (const QJsonValue &entry : historyOnDisk(w.store.historyPath()))
                result << entry.toObject().value("isPinned").toBool();
            return result;
        };
        w.store.togglePin(id);
        QCOMPARE(pinnedOnDisk(), QList<bool>({ false, true }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:b", "text:a" }));
        w.store.togglePin(id);
        QCOMPARE(pinnedOnDisk(), QList<bool>({ false, false }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:b", "text:a" }));
        QCOMPARE(texts(w.store), QStringList({ "b", "a" }));
    }

    void historyWithAnEntryWithoutIsPinnedStartsEmpty()
    {
        const QByteArray broken
            = R"([{"id":"0F8A3E2C-1B2D-4C5E-8F90-123456789ABC","createdAt":1,"kind":"text","text":"old"}])";
        writeFile(QDir(m_folder->path()).filePath("clipboard.json"), broken);
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.store.items().isEmpty());

        QVERIFY(w.copy("new"));
        QCOMPARE(texts(w.store), QStringList({ "new" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:new" }));
        QFile aside(w.store.historyPath() + QStringLiteral(".unreadable"));
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), broken);
    }

    void secretsFromAPasswordManagerAreSkipped()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.offer({ QStringLiteral("text/plain=hunter2"), QStringLiteral("x-kde-passwordManagerHint=secret") }));
        QVERIFY(w.store.items().isEmpty());
        QVERIFY(!QFile::exists(w.store.historyPath()));
        QVERIFY(w.copy("not secret"));
        QCOMPARE(texts(w.store), QStringList({ "not secret" }));
        w.store.flush();
        QFile history(w.store.historyPath());
        QVERIFY(history.open(QIODevice::ReadOnly));
        QVERIFY(!history.readAll().contains("hunter2"));
    }

    void copyBackReachesOtherApplicationsAndIsNotCapturedAgain()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy("first"));
        QVERIFY(w.copy("second"));
        QCOMPARE(texts(w.store), QStringList({ "second", "first" }));

        w.store.copyBack(w.store.items()[1]);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("first"));
        QTest::qWait(300);
        QCOMPARE(texts(w.store), QStringList({ "second", "first" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:second", "text:first" }));

        QVERIFY(w.copy("third"));
        QTRY_COMPARE(texts(w.store), QStringList({ "third", "second", "first" }));
        QCOMPARE(onDisk(w.store), QStringList({ "text:third", "text:second", "text:first" }));
    }

    void readerOnItsOwnConnectionReadsWhatOthersOffer()
    {
        const std::atomic_bool cancelled = false;
        // Each look is a new reader, as the store makes one for every change.
        const auto textNow = [&cancelled] { return X11SelectionReader(cancelled).text(); };
        QtPasteboard pasteboard; // so this test sees every change it makes come in

        // A Qt application: its text as UTF-8, whatever target it arrives through.
        QVERIFY(m_others.offer(
            { QStringLiteral("text/plain=h\u00e9llo"), QStringLiteral("x-kde-passwordManagerHint=secret") }));
        QTRY_COMPARE(textNow(), QStringLiteral("h\u00e9llo"));
        {
            X11SelectionReader reader(cancelled);
            QVERIFY(reader.isOpen());
            QVERIFY(reader.types().contains(QStringLiteral("text/plain")));
            QCOMPARE(reader.data(QStringLiteral("x-kde-passwordManagerHint")), QByteArray("secret"));
            QCOMPARE(reader.data(QStringLiteral("image/png")), QByteArray()); // not offered
        }

        // STRING is Latin-1.
        qint64 before = pasteboard.changeCount();
        m_others.copy("caf\xe9", QStringLiteral("STRING"));
        QTRY_COMPARE(textNow(), QStringLiteral("caf\u00e9"));
        QTRY_VERIFY(pasteboard.changeCount() > before);

        // An owner offering only a target named "text/plain".
        before = pasteboard.changeCount();
        m_others.copy("plain target", QStringLiteral("text/plain"));
        QTRY_COMPARE(textNow(), QStringLiteral("plain target"));
        QTRY_VERIFY(pasteboard.changeCount() > before);

        // Four megabytes come in pieces (INCR); every byte arrives.
        QByteArray big(4 * 1024 * 1024, 'i');
        for (qsizetype i = 0; i < big.size(); i += 4096)
            big[i] = char('a' + (i / 4096) % 26);
        before = pasteboard.changeCount();
        m_others.copy(big, QStringLiteral("UTF8_STRING"));
        QTRY_VERIFY(pasteboard.changeCount() > before);
        QTRY_COMPARE(X11SelectionReader(cancelled).data(QStringLiteral("text/plain")).size(), big.size());
        QCOMPARE(X11SelectionReader(cancelled).data(QStringLiteral("text/plain")), big);
    }

    void pictureCopiedBackReachesOtherApplications()
    {
        Watched w(m_folder->path(), m_others);
        QVERIFY(w.copy(pngOf(Qt::darkCyan, QSize(40, 30)), QStringLiteral("image/png")));
        QTRY_COMPARE(w.store.items().size(), 1);
        QVERIFY(w.copy("text on top"));
        w.store.copyBack(w.store.items()[1]);
        for (const QString &type : { QStringLiteral("image/png"), QStringLiteral("image/bmp") }) {
            QImage pasted;
            QVERIFY2(pasted.loadFromData(pasteElsewhere(type)), qPrintable(type));
            QCOMPARE(pasted.size(), QSize(40, 30));
            QCOMPARE(QColor(pasted.pixel(5, 5)), QColor(Qt::darkCyan));
        }
        QCOMPARE(w.store.items().size(), 2); // not captured again
    }

    void bigTextFromAnotherApplicationIsKeptCutAndAMebibyteWhole()
    {
        Watched w(m_folder->path(), m_others);
        QByteArray whole(ClipboardRules::maximumTextBytes, 'w');
        whole[0] = 'W';
        QVERIFY(w.copy(whole, QStringLiteral("UTF8_STRING")));
        QByteArray big(4 * ClipboardRules::maximumTextBytes, 'b');
        big[0] = 'B';
        QVERIFY(w.copy(big, QStringLiteral("UTF8_STRING")));
        QCOMPARE(w.store.items().size(), 2);
        // On disk once the writer's thread is done, without anyone asking it to hurry.
        QTRY_COMPARE(historyOnDisk(w.store.historyPath()).size(), 2);
        const QJsonArray disk = historyOnDisk(w.store.historyPath());
        QCOMPARE(disk[0].toObject().value("text").toString(),
            QString::fromLatin1(big.left(ClipboardRules::maximumTextBytes))
                + QStringLiteral("\u2026\n[Cut: 1,048,576 of 4,194,304 bytes copied are kept.]"));
        QCOMPARE(disk[1].toObject().value("text").toString(), QString::fromLatin1(whole));

        // Pasted elsewhere, the cut entry says it was cut.
        w.store.copyBack(w.store.items()[0]);
        QVERIFY(pasteElsewhere(QStringLiteral("UTF8_STRING")).endsWith("bytes copied are kept.]"));
    }

    void bigPictureFromAnotherApplicationIsStoredScaledDown()
    {
        Watched w(m_folder->path(), m_others);
        const QString png = m_files->filePath("big.png");
        writeFile(png, pngOf(Qt::darkGreen, QSize(6000, 4000)));
        QVERIFY(w.offer({ QStringLiteral("image/png<") + png }));
        QTRY_COMPARE_WITH_TIMEOUT(w.store.items().size(), 1, 20000);
        QCOMPARE(w.store.items()[0].kind, ClipboardKind::image);
        const QImage stored(QDir(w.store.imagesDirectory()).filePath(*w.store.items()[0].imageFileName), "PNG");
        QCOMPARE(stored.size(), ClipboardRules::storedImageSize(QSize(6000, 4000)));
        QCOMPARE(onDisk(w.store), QStringList({ "image:" + *w.store.items()[0].imageFileName }));
    }

private:
    OtherApplications m_others;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_files;
};

QTEST_MAIN(TestClipboardX11)
#include "test_clipboard_x11.moc"
