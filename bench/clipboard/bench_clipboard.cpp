// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The clipboard history on a real X display (run it on Xvfb):
//  - from the moment another application owns the clipboard to the entry on disk, 50
//    times;
//  - one poll step with an unchanged counter;
//  - the store's own save of a history of 50 entries of 1 KB and of 1 MB: how long the
//    main thread spends handing it over, how long until it is on disk;
//  - 50 large copies in a row (texts of 4 MiB, pictures of 31.5 megapixels): the longest
//    the main thread was held, the history's size on disk and the resident memory;
//  - how long a huge copy (40 MB of text, a 50-megapixel image) holds the main thread.
#include "bench/support/bench_support.h"
#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <optional>
#include <vector>

using namespace ledgewise;

namespace {

// Copies `bytes` in another application and returns it (it keeps serving the clipboard).
std::unique_ptr<QProcess> copyElsewhere(const QByteArray &bytes, const QString &target = QString())
{
    QStringList arguments = { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i") };
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    auto process = std::make_unique<QProcess>();
    process->start(QStringLiteral("xclip"), arguments);
    process->waitForStarted();
    process->write(bytes);
    process->closeWriteChannel();
    return process;
}

bool waitFor(const std::function<bool()> &condition, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    return condition();
}

// Longest time the event loop was blocked while `work` happened, sampled by a 1 ms timer.
struct LoopWatch {
    LoopWatch()
    {
        timer.setInterval(1);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            const qint64 now = clock.nsecsElapsed();
            longest = std::max(longest, now - last);
            last = now;
        });
        clock.start();
        last = 0;
        timer.start();
    }
    double longestMs() const { return longest / 1e6; }
    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longest = 0;
};

// Resident memory now and at its highest, from /proc/self/status.
QString residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return QStringLiteral("unknown");
    QString rss;
    QString peak;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            rss = QString::fromLatin1(line.mid(6).simplified());
        else if (line.startsWith("VmHWM:"))
            peak = QString::fromLatin1(line.mid(6).simplified());
    }
    return QStringLiteral("VmRSS %1 (peak VmHWM %2)").arg(rss, peak);
}

qint64 folderSize(const QString &path)
{
    qint64 total = 0;
    for (const QFileInfo &file : QDir(path).entryInfoList(QDir::Files))
        total += file.size();
    return total;
}

// A 31.5-megapixel picture (7000 x 4500) with some drawing on it, as a PNG file.
QString bigPicture(const QString &folder)
{
    QImage image(7000, 4500, QImage::Format_RGB32);
    image.fill(QColor(30, 60, 90));
    QPainter painter(&image);
    for (int i = 0; i < 40; ++i)
        painter.fillRect(QRect(i * 170, i * 100, 900, 600), QColor::fromHsv(i * 9 % 360, 200, 220));
    painter.end();
    const QString path = QDir(folder).filePath(QStringLiteral("big.png"));
    image.save(path, "PNG");
    return path;
}

// Another application making 50 large copies, one every 250 ms (a program of its own,
// so starting copiers costs this process nothing): texts of 4 MiB, each different, and
// at the 5th, 15th, ... 45th a 31.5-megapixel picture.
constexpr auto largeCopier = R"(text=$1; picture=$2; offer=$3
for i in $(seq 0 49); do
  if [ $((i % 10)) -eq 4 ]; then
    "$offer" "image/png<$picture" >/dev/null &
  else
    { printf '%012d' "$i"; tail -c +13 "$text"; } | xclip -selection clipboard -i
  fi
  sleep 0.25
done)";

// The 50 large copies, with a 16 ms timer on the main thread showing how long it was
// ever held, then the history's size on disk and this process's memory.
bool fiftyLargeCopies()
{
    QTemporaryDir folder;
    QTemporaryDir files;
    const QString picture = bigPicture(files.path());
    const QString text = QDir(files.path()).filePath(QStringLiteral("text"));
    {
        QFile file(text);
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray(4 * 1024 * 1024, 'x'));
    }
    QtPasteboard pasteboard;
    std::optional<ClipboardStore> store;
    store.emplace(pasteboard, folder.path(), 50, true);

    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longestGap = 0;
    int late = 0;
    int ticks = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.setInterval(16);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        longestGap = std::max(longestGap, now - last);
        late += now - last > 32'000'000;
        ++ticks;
        last = now;
    });

    const QString memoryBefore = residentMemory();
    QProcess copier;
    copier.start(QStringLiteral("bash"),
        { QStringLiteral("-c"), QString::fromLatin1(largeCopier), QStringLiteral("copier"), text, picture,
            QStringLiteral(LEDGEWISE_CLIPBOARD_OFFER) });
    copier.waitForStarted();
    clock.start();
    ticker.start();
    const bool arrived = waitFor([&] { return store->count() == 50; }, 60000);
    const double seconds = clock.nsecsElapsed() / 1e9;
    ticker.stop();
    copier.waitForFinished(10000);
    if (!arrived) {
        std::printf("only %d of the 50 large copies arrived\n", store->count());
        return false;
    }
    store->flush();
    const QString memory = residentMemory();
    bench::print("clipboard: 50 large copies (45 x 4 MiB, 5 x 31.5 MP)",
        QStringLiteral("16 ms timer: largest gap %1 ms, %2 of %3 ticks over 32 ms (%4 s)")
            .arg(longestGap / 1e6, 0, 'f', 0)
            .arg(late)
            .arg(ticks)
            .arg(seconds, 0, 'f', 1));
    bench::print("clipboard: after 50 large copies",
        QStringLiteral("history file %1, pictures %2; before: %3; after: %4")
            .arg(QLocale::c().formattedDataSize(QFileInfo(store->historyPath()).size()))
            .arg(QLocale::c().formattedDataSize(folderSize(store->imagesDirectory())))
            .arg(memoryBefore, memory));
    store.reset();
    {
        // The next start reads this history back, on the main thread.
        QElapsedTimer timer;
        timer.start();
        ClipboardStore again(pasteboard, folder.path(), 50, false);
        bench::print("clipboard: start with that history",
            QStringLiteral("%1 ms to load %2 entries").arg(timer.nsecsElapsed() / 1e6, 0, 'f', 0).arg(again.count()));
    }
    // The last copier leaves once someone else owns the clipboard.
    QGuiApplication::clipboard()->setText(QStringLiteral("done"));
    return true;
}
} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    // First, so the memory figure is this part's alone.
    if (!fiftyLargeCopies())
        return 1;
    QTemporaryDir folder;
    QtPasteboard pasteboard;
    ClipboardStore store(pasteboard, folder.path(), 50, true);

    QList<double> latencies;
    bool saved = false;
    bool changed = false;
    QObject::connect(&store, &ClipboardStore::historySaved, [&saved] { saved = true; });
    QObject::connect(&store, &ClipboardStore::itemsChanged, [&changed] { changed = true; });
    // Each copy is a new application owning the clipboard; the one before quits by
    // itself when it loses it.
    std::vector<std::unique_ptr<QProcess>> offers;
    for (int i = 0; i < 50; ++i) {
        const QByteArray text = QStringLiteral("copy number %1").arg(i).toUtf8();
        auto offer = std::make_unique<QProcess>();
        offer->start(
            QStringLiteral(LEDGEWISE_CLIPBOARD_OFFER), { QStringLiteral("text/plain=") + QString::fromUtf8(text) });
        // Blocking: the store cannot look at the clipboard before the clock starts.
        if (!offer->waitForReadyRead(10000) || offer->readLine().trimmed() != "ready") {
            std::printf("the other application did not take the clipboard\n");
            return 1;
        }
        saved = false;
        changed = false;
        QElapsedTimer timer;
        timer.start();
        // The entry is on disk once the writer's thread says so after the change.
        if (!waitFor([&] { return changed && saved; }, 5000)) {
            std::printf("capture %d did not arrive\n", i);
            return 1;
        }
        latencies.append(timer.nsecsElapsed() / 1e6);
        QFile history(store.historyPath());
        if (!history.open(QIODevice::ReadOnly) || !history.readAll().contains(text)) {
            std::printf("capture %d is not on disk\n", i);
            return 1;
        }
        offers.push_back(std::move(offer));
    }
    const auto capture = bench::statsOf(latencies);
    bench::print("clipboard: owner ready to entry on disk",
        QStringLiteral("median %1 ms, worst %2 ms (50 copies)")
            .arg(capture.median, 0, 'f', 2)
            .arg(capture.worst, 0, 'f', 2));

    {
        QElapsedTimer timer;
        timer.start();
        constexpr int polls = 100000;
        for (int i = 0; i < polls; ++i)
            emit pasteboard.changed(); // the poll step, with the counter unchanged
        bench::print("clipboard: one poll, counter unchanged",
            QStringLiteral("%1 ns").arg(timer.nsecsElapsed() / double(polls), 0, 'f', 0));
    }

    for (int size : { 1024, 1024 * 1024 }) {
        // A history of 50 such entries, loaded from disk; toggling a pin runs the
        // store's own save of the whole history.
        QTemporaryDir persistFolder;
        QList<ClipboardItem> items;
        for (int i = 0; i < 50; ++i)
            items.append({ QUuid::createUuid(), double(i), ClipboardKind::text,
                QString(size, QLatin1Char('a' + i % 26)), {}, {}, false });
        {
            QFile seed(QDir(persistFolder.path()).filePath(QStringLiteral("clipboard.json")));
            seed.open(QIODevice::WriteOnly);
            seed.write(encodeHistory(items));
        }
        ClipboardStore saving(pasteboard, persistFolder.path(), 50, false);
        if (saving.count() != 50) {
            std::printf("the seeded history did not load\n");
            return 1;
        }
        const QUuid id = saving.items().constFirst().id;
        bool written = false;
        QObject::connect(&saving, &ClipboardStore::historySaved, [&written] { written = true; });
        QList<double> handOver;
        QList<double> onDisk;
        for (int run = 0; run < 11; ++run) {
            written = false;
            QElapsedTimer timer;
            timer.start();
            saving.togglePin(id);
            handOver.append(timer.nsecsElapsed() / 1e6);
            waitFor([&] { return written; }, 10000);
            onDisk.append(timer.nsecsElapsed() / 1e6);
        }
        const auto held = bench::statsOf(handOver);
        const auto disk = bench::statsOf(onDisk);
        bench::print(
            qPrintable(QStringLiteral("clipboard: save of 50 entries of %1").arg(size == 1024 ? "1 KB" : "1 MB")),
            QStringLiteral(
                "main thread median %1 ms, worst %2 ms; on disk after median %3 ms, worst %4 ms (%5 file, 11 saves)")
                .arg(held.median, 0, 'f', 2)
                .arg(held.worst, 0, 'f', 2)
                .arg(disk.median, 0, 'f', 1)
                .arg(disk.worst, 0, 'f', 1)
                .arg(QLocale::c().formattedDataSize(QFileInfo(saving.historyPath()).size())));
    }

    // The history is full by now: whether a copy was kept shows in a save, not the count.
    std::unique_ptr<QProcess> owner;
    {
        LoopWatch watch;
        saved = false;
        owner = copyElsewhere(QByteArray(40 * 1024 * 1024, 'x'));
        waitFor([&] { return false; }, 3000);
        bench::print("clipboard: 40 MB of text copied elsewhere",
            QStringLiteral("main thread held at most %1 ms; %2")
                .arg(watch.longestMs(), 0, 'f', 0)
                .arg(saved ? QStringLiteral("captured, cut to 1 MiB") : QStringLiteral("skipped")));
    }
    {
        QImage image(10000, 5000, QImage::Format_RGB32);
        image.fill(Qt::darkBlue);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        LoopWatch watch;
        saved = false;
        owner = copyElsewhere(png, QStringLiteral("image/png"));
        waitFor([&] { return false; }, 3000);
        store.flush();
        bench::print("clipboard: 50-megapixel image copied elsewhere",
            QStringLiteral("main thread held at most %1 ms; %2")
                .arg(watch.longestMs(), 0, 'f', 0)
                .arg(saved ? QStringLiteral("captured") : QStringLiteral("skipped (too large)")));
    }
    owner.reset();
    return 0;
}
