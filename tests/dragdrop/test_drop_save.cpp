// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Saving a drop: large files and folders on a worker with progress, a cancel, and write
// errors (a file-size limit on this process), each leaving nothing partial behind.
#include "dragdrop/drop_actions.h"
#include "dragdrop/drop_save_job.h"
#include "dragdrop/drop_saves.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>

using namespace ledgewise;

namespace {

constexpr qint64 MiB = qint64(1) << 20;

DropPayload filePayload(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    return DropPayload { DropPayload::Kind::files, urls, {}, std::nullopt, std::nullopt };
}

DropPayload textPayload(const QString &text)
{
    return DropPayload { DropPayload::Kind::text, {}, {}, text, std::nullopt };
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

// A file of `size` bytes, mostly a hole, with a recognisable MiB at every 16 MiB so
// that a copy which lost or moved a chunk differs.
void makeLargeFile(const QString &path, qint64 size)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(size));
    for (qint64 at = 0; at + MiB <= size; at += 16 * MiB) {
        QVERIFY(file.seek(at));
        QByteArray chunk(MiB, char('a' + (at / (16 * MiB)) % 26));
        chunk.replace(0, 8, QByteArray::number(at).leftJustified(8, '.', true));
        QCOMPARE(file.write(chunk), MiB);
    }
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

bool sameBytes(const QString &a, const QString &b)
{
    QFile first(a), second(b);
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly) || first.size() != second.size())
        return false;
    while (!first.atEnd()) {
        if (first.read(4 * MiB) != second.read(4 * MiB))
            return false;
    }
    return true;
}

// Limits the files this process writes to `bytes` while it lives, as `ulimit -f` does.
// SIGXFSZ is ignored first, as Ledgewise does, so that a write past the limit fails
// with EFBIG instead of ending the test.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = bytes;
        m_active = ::setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    bool active() const { return m_active; }

private:
    rlimit m_before {};
    bool m_active = false;
};

} // namespace

class TestDropSave : public QObject
{
    Q_OBJECT

private slots:
    void largeFileSavesWithoutHoldingUpTheInterface()
    {
        QTemporaryDir source, downloads;
        const qint64 size = 200 * MiB;
        makeLargeFile(source.filePath("disk image.iso"), size);

        // The interface's own timer: it must keep firing while the save runs.
        QTimer tick;
        tick.setInterval(5);
        int ticksWhileSaving = 0;
        QElapsedTimer sinceTick;
        qint64 longestGap = 0;
        connect(&tick, &QTimer::timeout, this, [&] {
            ++ticksWhileSaving;
            longestGap = std::max(longestGap, sinceTick.restart());
        });

        DropSaveJob job(filePayload({ source.filePath("disk image.iso") }), downloads.path());
        QSignalSpy progressed(&job, &DropSaveJob::progressed);
        QSignalSpy finished(&job, &DropSaveJob::finished);
        QElapsedTimer took;
        took.start();
        sinceTick.start();
        tick.start();
        job.start();
        QVERIFY(finished.wait(120000));
        tick.stop();
        qInfo("200 MiB saved in %lld ms; the event loop ticked %d times, longest gap %lld ms", took.elapsed(),
            ticksWhileSaving, longestGap);

        QCOMPARE(finished.first().first().value<SaveOutcome>(), SaveOutcome::saved);
        QVERIFY2(ticksWhileSaving >= 2, "the event loop stood still during the save");
        QVERIFY(progressed.count() >= 1);
        QCOMPARE(progressed.last().at(0).toLongLong(), size);
        QCOMPARE(progressed.last().at(1).toLongLong(), size);
        for (const QList<QVariant> &report : std::as_const(progressed))
            QVERIFY(report.at(0).toLongLong() <= report.at(1).toLongLong());
        QCOMPARE(entries(downloads.path()), QStringList({ "disk image.iso" }));
        QVERIFY(sameBytes(source.filePath("disk image.iso"), downloads.filePath("disk image.iso")));
    }

    void cancelledFileSaveLeavesNothing()
    {
        QTemporaryDir source, downloads;
        makeLargeFile(source.filePath("big.bin"), 200 * MiB);
        writeFile(downloads.filePath("big.bin"), "already here");

        DropSaveJob job(filePayload({ source.filePath("big.bin") }), downloads.path());
        QSignalSpy finished(&job, &DropSaveJob::finished);
        connect(&job, &DropSaveJob::progressed, &job, &DropSaveJob::cancel);
        job.start();
        QVERIFY(finished.wait(120000));
        QCOMPARE(finished.first().first().value<SaveOutcome>(), SaveOutcome::cancelled);
        // Neither big-1.bin nor a temporary; what was there is untouched.
        QCOMPARE(entries(downloads.path()), QStringList({ "big.bin" }));
        QFile kept(downloads.filePath("big.bin"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("already here"));
    }

    void cancelledFolderSaveLeavesNoTree()
    {
        QTemporaryDir source, downloads;
        QVERIFY(QDir(source.path()).mkpath("project/a/b"));
        writeFile(source.filePath("project/README"), "read me");
        makeLargeFile(source.filePath("project/a/one.bin"), 48 * MiB);
        makeLargeFile(source.filePath("project/a/b/two.bin"), 48 * MiB);

        DropSaves saves([&downloads] { return downloads.path(); });
        QSignalSpy finished(&saves, &DropSaves::finished);
        // Cancelled the moment the first bytes are reported: a copy of mostly holes is
        // quick, and a poll could find it already finished.
        bool cancelled = false;
        connect(&saves, &DropSaves::changed, &saves, [&saves, &cancelled] {
            if (!cancelled && saves.fraction() > 0) {
                cancelled = true;
                saves.cancel();
            }
        });
        saves.save(filePayload({ source.filePath("project") }));
        QVERIFY(saves.saving());
        QVERIFY(finished.wait(60000));
        QVERIFY(cancelled);
        QCOMPARE(finished.first().first().value<SaveOutcome>(), SaveOutcome::cancelled);
        QVERIFY(!saves.saving());
        QCOMPARE(entries(downloads.path()), QStringList());
        QVERIFY(QFile::exists(source.filePath("project/a/b/two.bin")));
    }

    void fiftyMegabyteDroppedTextIsSavedWhole()
    {
        // The text is converted on the save's worker, from its own copy of the drop; the
        // drop on the surface stays as it was offered.
        QByteArray text = QByteArray("Grüße, ").repeated(8 * 1024 * 1024).left(50 * MiB - 1) + '\n';
        QMimeData data;
        data.setData(QStringLiteral("text/plain"), text);
        const auto payload = DropPayload::from(data);
        QVERIFY(payload);
        QTemporaryDir downloads;
        DropSaves saves([&downloads] { return downloads.path(); });
        QSignalSpy finished(&saves, &DropSaves::finished);
        saves.save(*payload);
        QVERIFY(finished.wait(60000));
        QVERIFY(!payload->text.isDecoded());
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped.txt" }));
        QFile saved(downloads.filePath("Dropped.txt"));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.size(), text.size());
        QVERIFY(saved.readAll() == text);
    }

    void savesQueueOneAfterAnother()
    {
        QTemporaryDir downloads;
        DropSaves saves([&downloads] { return downloads.path(); });
        QSignalSpy finished(&saves, &DropSaves::finished);
        saves.save(textPayload(QStringLiteral("first")));
        saves.save(textPayload(QStringLiteral("second")));
        QCOMPARE(saves.statusText(), QStringLiteral("Saving… 0 %"));
        QTRY_COMPARE(finished.count(), 2);
        QVERIFY(!saves.saving());
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped-1.txt", "Dropped.txt" }));
        QFile first(downloads.filePath("Dropped.txt"));
        QVERIFY(first.open(QIODevice::ReadOnly));
        QCOMPARE(first.readAll(), QByteArray("first"));
    }

    void savesGoingAwayCancelAndRemoveTheirTemporary()
    {
        QTemporaryDir source, downloads;
        makeLargeFile(source.filePath("big.bin"), 200 * MiB);
        {
            DropSaves saves([&downloads] { return downloads.path(); });
            // Gone the moment the first bytes are reported, before the copy can finish.
            QEventLoop underway;
            connect(&saves, &DropSaves::changed, &underway, [&saves, &underway] {
                if (saves.fraction() > 0)
                    underway.quit();
            });
            QTimer::singleShot(60000, &underway, &QEventLoop::quit);
            saves.save(filePayload({ source.filePath("big.bin") }));
            underway.exec();
            QVERIFY(saves.fraction() > 0);
        }
        QCOMPARE(entries(downloads.path()), QStringList());
    }

    void fileThatReportsNoSizeIsCopiedWhole()
    {
        // Files under /proc say they are empty and still have something to read.
        QTemporaryDir downloads;
        QCOMPARE(DropActions::save(filePayload({ QStringLiteral("/proc/self/status") }), downloads.path()),
            SaveOutcome::saved);
        QFile copy(downloads.filePath("status"));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QVERIFY(copy.readAll().startsWith("Name:"));
    }

    void leftoversOfAnInterruptedSaveAreRemovedBeforeTheFirstSave()
    {
        QTemporaryDir downloads;
        // What a save killed midway leaves: a temporary file and a temporary tree.
        writeFile(downloads.filePath(".ledgewise-save-Ab12Cd"), "half a file");
        QVERIFY(QDir(downloads.path()).mkpath(".ledgewise-save-Zz99Yy/inner"));
        writeFile(downloads.filePath(".ledgewise-save-Zz99Yy/inner/part"), "half a tree");
        writeFile(downloads.filePath(".hidden-but-mine"), "kept");
        writeFile(downloads.filePath("report.ledgewise-save-"), "kept");

        DropSaves saves([&downloads] { return downloads.path(); });
        QSignalSpy finished(&saves, &DropSaves::finished);
        saves.save(textPayload(QStringLiteral("new")));
        QVERIFY(saves.saving());
        QVERIFY(finished.wait(10000));
        QCOMPARE(
            entries(downloads.path()), QStringList({ ".hidden-but-mine", "Dropped.txt", "report.ledgewise-save-" }));
    }

    void fileLargerThanTheDiskAllowsLeavesNothing()
    {
        QTemporaryDir source, downloads;
        makeLargeFile(source.filePath("video.mkv"), 6 * MiB);
        writeFile(source.filePath("small.txt"), "fits");
        SaveOutcome outcome;
        {
            FileSizeLimit limit(2 * MiB);
            QVERIFY(limit.active());
            outcome = DropActions::save(
                filePayload({ source.filePath("video.mkv"), source.filePath("small.txt") }), downloads.path());
        }
        QCOMPARE(outcome, SaveOutcome::failed);
        // The file that fits is saved; the one that did not left no truncated copy.
        QCOMPARE(entries(downloads.path()), QStringList({ "small.txt" }));
    }

    void folderThatFailsMidwayLeavesNoTree()
    {
        QTemporaryDir source, downloads;
        QVERIFY(QDir(source.path()).mkpath("photos/2024"));
        writeFile(source.filePath("photos/a.jpg"), "small");
        makeLargeFile(source.filePath("photos/2024/b.raw"), 6 * MiB);
        writeFile(source.filePath("photos/z.jpg"), "small too");
        SaveOutcome outcome;
        {
            FileSizeLimit limit(2 * MiB);
            QVERIFY(limit.active());
            outcome = DropActions::save(filePayload({ source.filePath("photos") }), downloads.path());
        }
        QCOMPARE(outcome, SaveOutcome::failed);
        QCOMPARE(entries(downloads.path()), QStringList());
    }

    void textThatCannotBeWrittenWholeLeavesNothing()
    {
        QTemporaryDir downloads;
        SaveOutcome outcome;
        {
            FileSizeLimit limit(MiB);
            QVERIFY(limit.active());
            outcome = DropActions::save(textPayload(QString(3 * MiB, QLatin1Char('x'))), downloads.path());
        }
        QCOMPARE(outcome, SaveOutcome::failed);
        QCOMPARE(entries(downloads.path()), QStringList());
    }

    void failedSaveInTheBackgroundLeavesNothing()
    {
        QTemporaryDir source, downloads;
        makeLargeFile(source.filePath("big.bin"), 8 * MiB);
        FileSizeLimit limit(3 * MiB);
        QVERIFY(limit.active());
        DropSaveJob job(filePayload({ source.filePath("big.bin") }), downloads.path());
        QSignalSpy finished(&job, &DropSaveJob::finished);
        job.start();
        QVERIFY(finished.wait(60000));
        QCOMPARE(finished.first().first().value<SaveOutcome>(), SaveOutcome::failed);
        QCOMPARE(entries(downloads.path()), QStringList());
    }
};

QTEST_MAIN(TestDropSave)
#include "test_drop_save.moc"
