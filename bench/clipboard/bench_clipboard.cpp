// The clipboard history on a real X display (run it on Xvfb):
//  - from the moment another application owns the clipboard to the entry on disk, 50
//    times;
//  - one poll step with an unchanged counter;
//  - the store's own save of a history of 50 entries of 1 KB and of 1 MB;
//  - how long a huge copy (40 MB of text, a 50-megapixel image) holds the main thread.
#include "bench/support/bench_support.h"
#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"

#include <QBuffer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <vector>

using namespace ledgewise;

namespace {

// Copies `bytes` in another application and returns it (it keeps serving the clipboard).
std::unique_ptr<QProcess> copyElsewhere(const QByteArray &bytes, const QString &target = QString())
{
    QStringList arguments = {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")};
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

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QTemporaryDir folder;
    QtPasteboard pasteboard;
    ClipboardStore store(pasteboard, folder.path(), 50, true);

    QList<double> latencies;
    bool saved = false;
    QObject::connect(&store, &ClipboardStore::itemsChanged, [&saved] { saved = true; });
    // Each copy is a new application owning the clipboard; the one before quits by
    // itself when it loses it.
    std::vector<std::unique_ptr<QProcess>> offers;
    for (int i = 0; i < 50; ++i) {
        const QByteArray text = QStringLiteral("copy number %1").arg(i).toUtf8();
        auto offer = std::make_unique<QProcess>();
        offer->start(QStringLiteral(LEDGEWISE_CLIPBOARD_OFFER), {QStringLiteral("text/plain=") + QString::fromUtf8(text)});
        // Blocking: the store cannot look at the clipboard before the clock starts.
        if (!offer->waitForReadyRead(10000) || offer->readLine().trimmed() != "ready") {
            std::printf("the other application did not take the clipboard\n");
            return 1;
        }
        saved = false;
        QElapsedTimer timer;
        timer.start();
        // The store saves before it announces a change, so the entry is on disk here.
        if (!waitFor([&] { return saved; }, 5000)) {
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
                     .arg(capture.median, 0, 'f', 2).arg(capture.worst, 0, 'f', 2));

    {
        QElapsedTimer timer;
        timer.start();
        constexpr int polls = 100000;
        for (int i = 0; i < polls; ++i)
            emit pasteboard.changed(); // the poll step, with the counter unchanged
        bench::print("clipboard: one poll, counter unchanged",
                     QStringLiteral("%1 ns").arg(timer.nsecsElapsed() / double(polls), 0, 'f', 0));
    }

    for (int size : {1024, 1024 * 1024}) {
        // A history of 50 such entries, loaded from disk; toggling a pin runs the
        // store's own save of the whole history.
        QTemporaryDir persistFolder;
        QList<ClipboardItem> items;
        for (int i = 0; i < 50; ++i)
            items.append({QUuid::createUuid(), double(i), ClipboardKind::text, QString(size, QLatin1Char('a' + i % 26)),
                          {}, {}, false});
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
        QList<double> samples;
        for (int run = 0; run < 11; ++run) {
            QElapsedTimer timer;
            timer.start();
            saving.pin(id);
            samples.append(timer.nsecsElapsed() / 1e6);
        }
        const auto stats = bench::statsOf(samples);
        bench::print(qPrintable(QStringLiteral("clipboard: save of 50 entries of %1").arg(size == 1024 ? "1 KB" : "1 MB")),
                     QStringLiteral("median %1 ms, worst %2 ms (%3 file, 11 saves)")
                         .arg(stats.median, 0, 'f', 2)
                         .arg(stats.worst, 0, 'f', 2)
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
                         .arg(saved ? QStringLiteral("captured") : QStringLiteral("skipped (too large)")));
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
        bench::print("clipboard: 50-megapixel image copied elsewhere",
                     QStringLiteral("main thread held at most %1 ms; %2")
                         .arg(watch.longestMs(), 0, 'f', 0)
                         .arg(saved ? QStringLiteral("captured") : QStringLiteral("skipped (too large)")));
    }
    owner.reset();
    return 0;
}
