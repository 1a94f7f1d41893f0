// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_store.h"
#include "platform/filesystem/folder_entries.h"
#include "platform/filesystem/folder_watcher.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ledgewise;

namespace {

// Writes (or appends to) a file, as a browser writing a download would.
void grow(const QString &path, qint64 bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write(QByteArray(bytes, 'x'));
}

void makeFile(const QString &path, qint64 bytes, const QDateTime &modified = {})
{
    grow(path, bytes);
    if (modified.isValid()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    }
}

QStringList names(const DownloadsStore &store)
{
    QStringList result;
    for (const DownloadItem &item : store.items())
        result << item.name;
    return result;
}

std::optional<DownloadItem::Status> statusOf(const DownloadsStore &store, const QString &name)
{
    for (const DownloadItem &item : store.items()) {
        if (item.name == name)
            return item.status;
    }
    return std::nullopt;
}

// A download in progress: the file stays open, as a browser keeps it, and grows by
// `bytes` every `intervalMs` for `steps` steps, the first at once.
class GrowingFile
{
public:
    GrowingFile(const QString &path, qint64 bytes, int intervalMs, int steps)
        : m_file(path)
        , m_bytes(bytes)
        , m_stepsLeft(steps)
    {
        m_file.open(QIODevice::Append | QIODevice::Unbuffered);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(intervalMs);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { step(); });
        step();
        m_timer.start();
    }

    bool isOpen() const { return m_file.isOpen(); }
    bool isDone() const { return m_stepsLeft == 0; }
    // Time since the last step.
    qint64 sinceLastStep() const { return m_sinceLastStep.elapsed(); }
    int stepsTaken() const { return m_stepsTaken; }
    void close() { m_file.close(); }

private:
    void step()
    {
        if (m_stepsLeft == 0)
            return;
        m_file.write(QByteArray(m_bytes, 'x'));
        m_sinceLastStep.start();
        ++m_stepsTaken;
        if (--m_stepsLeft == 0)
            m_timer.stop();
    }

    QFile m_file;
    qint64 m_bytes;
    int m_stepsLeft;
    int m_stepsTaken = 0;
    QTimer m_timer;
    QElapsedTimer m_sinceLastStep;
};

int openDescriptors()
{
    return int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
}

// The folder is listed in the background: true once that listing is in.
[[nodiscard]] bool scanned(const DownloadsStore &store)
{
    return QTest::qWaitFor([&store] { return !store.isScanning(); }, 10000);
}

[[nodiscard]] bool rescanned(DownloadsStore &store)
{
    store.refresh();
    return scanned(store);
}

// A watching store once its first listing is in.
std::unique_ptr<DownloadsStore> watching(const QString &folder)
{
    auto store = std::make_unique<DownloadsStore>(folder, std::make_unique<InotifyFolderWatcher>());
    if (!scanned(*store))
        qWarning("the first listing did not finish");
    return store;
}

// Many files quickly, straight through the system calls: `count` files named
// prefix-N, one byte each.
bool makeMany(const QString &folder, const QString &prefix, int count)
{
    for (int i = 0; i < count; ++i) {
        const QByteArray path = QFile::encodeName(QStringLiteral("%1/%2-%3").arg(folder, prefix).arg(i));
        const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0 || ::write(fd, "x", 1) != 1)
            return false;
        ::close(fd);
    }
    return true;
}

bool setModified(const QByteArray &path, const QDateTime &time)
{
    const qint64 ms = time.toMSecsSinceEpoch();
    const timespec times[2] = { { ms / 1000, (ms % 1000) * 1'000'000 }, { ms / 1000, (ms % 1000) * 1'000'000 } };
    return ::utimensat(AT_FDCWD, path.constData(), times, 0) == 0;
}

int queuedEventsLimit()
{
    QFile limit(QStringLiteral("/proc/sys/fs/inotify/max_queued_events"));
    return limit.open(QIODevice::ReadOnly) ? limit.readAll().trimmed().toInt() : 16384;
}

const QDateTime base = QDateTime(QDate(2026, 11, 1), QTime(12, 0), QTimeZone::utc());

} // namespace

class TestDownloadsStore : public QObject
{
    Q_OBJECT

private slots:
    void emptyFolderGivesAnEmptyList()
    {
        QTemporaryDir folder;
        auto store = watching(folder.path());
        QVERIFY(store->items().isEmpty());
        QVERIFY(store->isWatching());
    }

    void twentyFilesGiveTheTwelveNewestNewestFirst()
    {
        QTemporaryDir folder;
        for (int i = 0; i < 20; ++i)
            makeFile(folder.filePath(QStringLiteral("file-%1.bin").arg(i, 2, 10, QLatin1Char('0'))), 10,
                base.addSecs(i * 60));
        auto store = watching(folder.path());
        QStringList expected;
        for (int i = 19; i >= 8; --i)
            expected << QStringLiteral("file-%1.bin").arg(i, 2, 10, QLatin1Char('0'));
        QCOMPARE(names(*store), expected);
        QCOMPARE(store->items()[0].url, QUrl::fromLocalFile(folder.filePath("file-19.bin")));
        QCOMPARE(store->items()[0].modified, base.addSecs(19 * 60));
        for (const DownloadItem &item : store->items())
            QCOMPARE(item.status, DownloadItem::Status::ready);
    }

    void fileBeyondTheNewestTwelveIsStillMeasured()
    {
        QTemporaryDir folder;
        makeFile(folder.filePath("old.iso.part"), 1000, base);
        for (int i = 1; i <= 12; ++i)
            makeFile(folder.filePath(QStringLiteral("file-%1.bin").arg(i)), 10, base.addSecs(i * 60));
        auto store = watching(folder.path());
        QCOMPARE(store->items().size(), 12);
        QVERIFY(!names(*store).contains(QStringLiteral("old.iso.part")));

        // It grows, which also makes it the newest: its earlier size was measured
        // although it was not shown, so it is downloading, not seen for the first time.
        grow(folder.filePath("old.iso.part"), 4000);
        QTRY_COMPARE(names(*store).value(0), QStringLiteral("old.iso.part"));
        QCOMPARE(statusOf(*store, "old.iso.part"), DownloadItem::Status::downloading);
        QCOMPARE(store->items().size(), 12);
        QTRY_COMPARE_WITH_TIMEOUT(statusOf(*store, "old.iso.part"), DownloadItem::Status::ready, 3000);
    }

    void fileGrowingInStepsStaysDownloadingAndSettlesAfterTheLastStep()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("big.iso.part");
        makeFile(path, 1000);
        auto store = watching(folder.path());
        QCOMPARE(statusOf(*store, "big.iso.part"), DownloadItem::Status::ready);
        QList<DownloadItem::Status> shown;
        connect(store.get(), &DownloadsStore::itemsChanged, this,
            [&] { shown.append(statusOf(*store, "big.iso.part").value_or(DownloadItem::Status::ready)); });
        QSignalSpy checked(store.get(), &DownloadsStore::settleChecked);

        // 1000 bytes every 0.2 s for 1.4 s: eight steps.
        GrowingFile download(path, 1000, 200, 8);
        QVERIFY(download.isOpen());
        QTRY_VERIFY_WITH_TIMEOUT(download.isDone(), 5000);
        QTRY_COMPARE_WITH_TIMEOUT(statusOf(*store, "big.iso.part"), DownloadItem::Status::ready, 3000);
        const qint64 settledAfter = download.sinceLastStep();
        QVERIFY2(settledAfter >= 550 && settledAfter < 1100, qPrintable(QString::number(settledAfter)));
        // Downloading from the first step on, ready only at the end: every step pushed
        // the one check back.
        QCOMPARE(shown.first(), DownloadItem::Status::downloading);
        QCOMPARE(shown.count(DownloadItem::Status::ready), 1);
        QCOMPARE(shown.last(), DownloadItem::Status::ready);
        QCOMPARE(checked.count(), 1);
        QCOMPARE(QFileInfo(path).size(), 9000);
        download.close();
    }

    void aDownloadGrowingInAFolderOfTwentyThousandFilesIsDownloadingThenReady()
    {
        QTemporaryDir folder;
        QVERIFY(makeMany(folder.path(), QStringLiteral("old"), 20000));
        auto store = watching(folder.path());
        QCOMPARE(store->items().size(), 12);
        const QString path = folder.filePath("film.mkv.part");
        makeFile(path, 1000);
        QTRY_COMPARE(names(*store).value(0), QStringLiteral("film.mkv.part"));
        QCOMPARE(statusOf(*store, "film.mkv.part"), DownloadItem::Status::ready); // seen for the first time

        // Every 10 ms for 1.5 s: downloading all along, ready once it stops.
        QList<DownloadItem::Status> shown;
        connect(store.get(), &DownloadsStore::itemsChanged, this, [&] {
            if (names(*store).value(0) == QStringLiteral("film.mkv.part"))
                shown.append(*statusOf(*store, "film.mkv.part"));
        });
        GrowingFile download(path, 4096, 10, 150);
        QTRY_COMPARE(statusOf(*store, "film.mkv.part"), DownloadItem::Status::downloading);
        QTRY_VERIFY_WITH_TIMEOUT(download.isDone(), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(statusOf(*store, "film.mkv.part"), DownloadItem::Status::ready, 3000);
        QCOMPARE(shown.count(DownloadItem::Status::ready), 1);
        QCOMPARE(shown.last(), DownloadItem::Status::ready);
        download.close();

        // Still the newest twelve, newest first, after all that.
        QCOMPARE(store->items().size(), 12);
        QCOMPARE(names(*store).value(0), QStringLiteral("film.mkv.part"));
        for (qsizetype i = 1; i < store->items().size(); ++i)
            QVERIFY(!DownloadRules::isLater(store->items()[i].modified, store->items()[i - 1].modified));
        QCOMPARE(store->rememberedSizeCount(), 20001);
    }

    void fiveThousandNamesCreatedAndDeletedLeaveNothingRemembered()
    {
        QTemporaryDir folder;
        auto store = watching(folder.path());
        for (int round = 0; round < 10; ++round) {
            const QString prefix = QStringLiteral("round%1").arg(round);
            QVERIFY(makeMany(folder.path(), prefix, 500));
            QTRY_COMPARE(store->rememberedSizeCount(), 500);
            QCOMPARE(store->items().size(), 12);
            for (int i = 0; i < 500; ++i)
                QVERIFY(QFile::remove(QStringLiteral("%1/%2-%3").arg(folder.path(), prefix).arg(i)));
            QTRY_VERIFY(store->items().isEmpty());
        }
        // Sizes of files gone with a settle check due are dropped once it agrees.
        QTRY_COMPARE_WITH_TIMEOUT(store->rememberedSizeCount(), 0, 3000);
    }

    void eventsLostWhenTheQueueOverflowsLeadToAFullListing()
    {
        QTemporaryDir folder;
        makeFile(folder.filePath("before.txt"), 10, base);
        auto store = watching(folder.path());
        QCOMPARE(names(*store), QStringList({ "before.txt" }));
        QSignalSpy scans(store.get(), &DownloadsStore::scanFinished);

        // Three events a file (created, written, closed), all queued while the store
        // cannot read them: the kernel drops what does not fit and says so.
        const int files = queuedEventsLimit() / 3 + 1000;
        if (files > 200000)
            QSKIP("this system queues too many inotify events to overflow quickly");
        QVERIFY(makeMany(folder.path(), QStringLiteral("burst"), files));
        // The last ones, whose events were lost, are made the newest.
        const QDateTime tomorrow = QDateTime::currentDateTimeUtc().addDays(1);
        QStringList expected;
        for (int i = files - 1; i >= files - 12; --i) {
            const QString name = QStringLiteral("burst-%1").arg(i);
            QVERIFY(setModified(QFile::encodeName(folder.filePath(name)), tomorrow.addSecs(i)));
            expected << name;
        }
        QVERIFY(QFile::remove(folder.filePath("before.txt")));

        QTRY_VERIFY_WITH_TIMEOUT(scans.count() >= 1, 10000);
        QTRY_COMPARE_WITH_TIMEOUT(names(*store), expected, 10000);
        QCOMPARE(store->rememberedSizeCount(), files);
    }

    void aNameThatIsNotUtf8IsShownReadablyAndItsUrlKeepsTheRealBytes()
    {
        QTemporaryDir folder;
        auto store = watching(folder.path());
        const QByteArray name("r\xff\xfe"
                              "port.pdf");
        const QByteArray path = QFile::encodeName(folder.path()) + '/' + name;
        const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        QVERIFY(fd >= 0);
        ::close(fd);

        QTRY_COMPARE(store->items().size(), 1);
        const DownloadItem item = store->items().constFirst();
        QCOMPARE(item.name, QStringLiteral("r\uFFFD\uFFFDport.pdf"));
        QCOMPARE(FolderEntries::pathOfUrl(item.url), path);
        QVERIFY(FolderEntries::regularFile(FolderEntries::pathOfUrl(item.url)));
        // What Qt makes of the decoded name would name another file.
        QVERIFY(!QFile::exists(QUrl::fromLocalFile(QFile::decodeName(path)).toLocalFile()));

        // Removed: found by its bytes too.
        QVERIFY(::unlink(path.constData()) == 0);
        QTRY_VERIFY(store->items().isEmpty());
    }

    void folderThatIsARegularFileIsAnEmptyList()
    {
        QTemporaryDir parent;
        const QString notAFolder = parent.filePath("Downloads");
        makeFile(notAFolder, 10);
        auto store = watching(notAFolder);
        QVERIFY(store->items().isEmpty());
        QVERIFY(!store->isWatching());
        QVERIFY(rescanned(*store));
        QVERIFY(store->items().isEmpty());
    }

    void folderReplacedByAFileEmptiesTheListAndTheStoreKeepsRunning()
    {
        QTemporaryDir parent;
        const QString folder = parent.filePath("Downloads");
        QVERIFY(QDir().mkpath(folder));
        makeFile(folder + "/a.txt", 1);
        auto store = watching(folder);
        QCOMPARE(names(*store), QStringList({ "a.txt" }));

        QVERIFY(QDir(folder).removeRecursively());
        makeFile(folder, 10); // a regular file where the folder was
        QTRY_VERIFY(store->items().isEmpty());
        QTRY_VERIFY(!store->isWatching());
        QVERIFY(rescanned(*store));
        QVERIFY(store->items().isEmpty());

        // A folder again: the next rescan lists it.
        QVERIFY(QFile::remove(folder));
        QVERIFY(QDir().mkpath(folder));
        makeFile(folder + "/b.txt", 1);
        QVERIFY(rescanned(*store));
        QCOMPARE(names(*store), QStringList({ "b.txt" }));
    }

    void destroyingTheStoreWithACheckPendingIsClean()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("pending.part");
        makeFile(path, 10);
        const int descriptorsBefore = openDescriptors();
        auto store = watching(folder.path());
        QVERIFY(openDescriptors() > descriptorsBefore); // the inotify descriptor
        int checks = 0;
        QObject observer;
        connect(store.get(), &DownloadsStore::settleChecked, &observer, [&checks] { ++checks; });
        grow(path, 10);
        QTRY_COMPARE(statusOf(*store, "pending.part"), DownloadItem::Status::downloading);

        store.reset(); // the check is still 0.6 s away
        QCOMPARE(openDescriptors(), descriptorsBefore);
        grow(path, 10);
        QTest::qWait(900); // past the check's time: nothing may run
        QCOMPARE(checks, 0);
    }

    void hiddenFilesFoldersAndLinksAreNeverListed()
    {
        QTemporaryDir folder;
        makeFile(folder.filePath(".hidden"), 5);
        makeFile(folder.filePath("visible.txt"), 5);
        QVERIFY(QDir(folder.path()).mkdir("subfolder"));
        makeFile(folder.filePath("subfolder/inside.txt"), 5);
        QVERIFY(QFile::link(folder.filePath("visible.txt"), folder.filePath("link.txt")));
        auto store = watching(folder.path());
        QCOMPARE(names(*store), QStringList({ "visible.txt" }));

        makeFile(folder.filePath(".another-hidden"), 5);
        QVERIFY(QDir(folder.path()).mkdir("second-folder"));
        makeFile(folder.filePath("new.txt"), 5);
        QTRY_COMPARE(store->items().size(), 2);
        QVERIFY(!names(*store).contains(QStringLiteral(".another-hidden")));
    }

    void newFilesAppearAsTheyArrive()
    {
        QTemporaryDir folder;
        auto store = watching(folder.path());
        QSignalSpy changed(store.get(), &DownloadsStore::itemsChanged);
        makeFile(folder.filePath("arrived.pdf"), 100);
        QTRY_COMPARE(names(*store), QStringList({ "arrived.pdf" }));
        QVERIFY(QFile::rename(folder.filePath("arrived.pdf"), folder.filePath("renamed.pdf")));
        QTRY_COMPARE(names(*store), QStringList({ "renamed.pdf" }));
        QVERIFY(QFile::remove(folder.filePath("renamed.pdf")));
        QTRY_VERIFY(store->items().isEmpty());
        QVERIFY(changed.count() >= 3);
    }

    void growingFileIsDownloadingUntilItSettles()
    {
        QTemporaryDir folder;
        auto store = watching(folder.path());
        const QString path = folder.filePath("movie.mkv.part");
        makeFile(path, 1000);
        // Seen for the first time: ready, even though it is still growing.
        QTRY_COMPARE(statusOf(*store, "movie.mkv.part"), DownloadItem::Status::ready);

        QSignalSpy checked(store.get(), &DownloadsStore::settleChecked);
        grow(path, 4000); // 1000 → 5000 bytes
        QTRY_COMPARE(statusOf(*store, "movie.mkv.part"), DownloadItem::Status::downloading);
        QElapsedTimer sinceLastChange;
        sinceLastChange.start();
        QTRY_COMPARE_WITH_TIMEOUT(statusOf(*store, "movie.mkv.part"), DownloadItem::Status::ready, 3000);
        QVERIFY2(sinceLastChange.elapsed() >= 500, qPrintable(QString::number(sinceLastChange.elapsed())));
        QCOMPARE(checked.count(), 1);
    }

    void changesInQuickSuccessionPushTheCheckBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("iso.part");
        makeFile(path, 10);
        auto store = watching(folder.path());
        QSignalSpy checked(store.get(), &DownloadsStore::settleChecked);

        grow(path, 10);
        QTRY_COMPARE(statusOf(*store, "iso.part"), DownloadItem::Status::downloading);
        QTest::qWait(300);
        grow(path, 10);
        QElapsedTimer sinceSecond;
        sinceSecond.start();
        QVERIFY(checked.wait(3000));
        const qint64 elapsed = sinceSecond.elapsed();
        QCOMPARE(checked.count(), 1);
        QVERIFY2(elapsed >= 550 && elapsed < 1000, qPrintable(QString::number(elapsed)));
        QCOMPARE(statusOf(*store, "iso.part"), DownloadItem::Status::ready);
        QVERIFY(!checked.wait(900)); // settled: no further checks
    }

    void fileThatVanishesBeforeItsCheckSettlesAtZero()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("gone.part");
        makeFile(path, 10);
        auto store = watching(folder.path());
        QSignalSpy checked(store.get(), &DownloadsStore::settleChecked);
        grow(path, 10);
        QTRY_COMPARE(statusOf(*store, "gone.part"), DownloadItem::Status::downloading);
        QVERIFY(QFile::remove(path));
        QTRY_VERIFY(store->items().isEmpty());
        // First check measures 0 (changed), the next finds 0 again and stops.
        QTRY_COMPARE_WITH_TIMEOUT(checked.count(), 2, 3000);
        QVERIFY(!checked.wait(900));
    }

    void folderDeletedWhileWatchedEmptiesTheList()
    {
        QTemporaryDir parent;
        const QString folder = parent.filePath("Downloads");
        QVERIFY(QDir().mkpath(folder));
        makeFile(folder + "/a.txt", 1);
        auto store = watching(folder);
        QCOMPARE(store->items().size(), 1);
        QVERIFY(QDir(folder).removeRecursively());
        QTRY_VERIFY(store->items().isEmpty());
        QVERIFY(rescanned(*store));
        QVERIFY(store->items().isEmpty());
    }

    void missingFolderIsAnEmptyListWithoutWatching()
    {
        QTemporaryDir parent;
        auto store = watching(parent.filePath("nowhere"));
        QVERIFY(store->items().isEmpty());
        QVERIFY(!store->isWatching());
    }

    void defaultFolderIsTheUsersDownloads()
    {
        DownloadsStore store(std::nullopt, nullptr);
        QCOMPARE(store.folder(), QDir::home().filePath(QStringLiteral("Downloads")));
    }

    void undatedFilesSortLastAndEqualDatesKeepTheirOrder()
    {
        const QDateTime t = base;
        QList<DownloadItem> items = {
            { QUrl::fromLocalFile("/d/undated"), "undated", QDateTime(), DownloadItem::Status::ready },
            { QUrl::fromLocalFile("/d/a"), "a", t, DownloadItem::Status::ready },
            { QUrl::fromLocalFile("/d/b"), "b", t, DownloadItem::Status::ready },
            { QUrl::fromLocalFile("/d/newer"), "newer", t.addSecs(1), DownloadItem::Status::ready },
        };
        QStringList sorted;
        for (const DownloadItem &item : DownloadRules::newestFirst(items))
            sorted << item.name;
        QCOMPARE(sorted, QStringList({ "newer", "a", "b", "undated" }));
    }

    void statusRule()
    {
        QCOMPARE(DownloadRules::statusFor(std::nullopt, 5000), DownloadItem::Status::ready);
        QCOMPARE(DownloadRules::statusFor(1000, 5000), DownloadItem::Status::downloading);
        QCOMPARE(DownloadRules::statusFor(5000, 5000), DownloadItem::Status::ready);
        QCOMPARE(rawValue(DownloadItem::Status::downloading), QStringLiteral("downloading"));
        QCOMPARE(rawValue(DownloadItem::Status::ready), QStringLiteral("ready"));
    }
};

QTEST_GUILESS_MAIN(TestDownloadsStore)
#include "test_downloads_store.moc"
