// The clipboard history on a real X display (run it on Xvfb):
//  - from another application's copy (xclip) to the entry on disk, 50 times;
//  - one poll step with an unchanged counter;
//  - writing the history file with 50 entries of 1 KB and of 1 MB;
//  - how long a huge copy (40 MB of text, a 50-megapixel image) holds the main thread.
#include "bench/support/bench_support.h"
#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"

#include <QBuffer>
#include <QEventLoop>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTimer>

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
    std::unique_ptr<QProcess> owner;
    for (int i = 0; i < 50; ++i) {
        const int before = store.count();
        const qint64 sizeBefore = QFileInfo(store.historyPath()).size();
        QElapsedTimer timer;
        timer.start();
        owner = copyElsewhere(QStringLiteral("copy number %1").arg(i).toUtf8());
        if (!waitFor([&] { return store.count() > before || (before == 50 && QFileInfo(store.historyPath()).size() != sizeBefore); }, 5000)) {
            std::printf("capture %d did not arrive\n", i);
            return 1;
        }
        latencies.append(timer.nsecsElapsed() / 1e6);
    }
    const auto capture = bench::statsOf(latencies);
    bench::print("clipboard: copy elsewhere to entry on disk",
                 QStringLiteral("median %1 ms, worst %2 ms (50 copies, includes starting xclip)")
                     .arg(capture.median, 0, 'f', 1).arg(capture.worst, 0, 'f', 1));

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
        QTemporaryDir persistFolder;
        QList<double> samples;
        QList<ClipboardItem> items;
        for (int i = 0; i < 50; ++i)
            items.append({QUuid::createUuid(), 0, ClipboardKind::text, QString(size, QLatin1Char('a' + i % 26)), {}, {}, false});
        for (int run = 0; run < 5; ++run) {
            QElapsedTimer timer;
            timer.start();
            QSaveFile file(persistFolder.filePath(QStringLiteral("clipboard.json")));
            file.open(QIODevice::WriteOnly);
            file.write(encodeHistory(items));
            file.commit();
            samples.append(timer.nsecsElapsed() / 1e6);
        }
        const auto stats = bench::statsOf(samples);
        bench::print(qPrintable(QStringLiteral("clipboard: persist 50 entries of %1").arg(size == 1024 ? "1 KB" : "1 MB")),
                     QStringLiteral("median %1 ms, worst %2 ms").arg(stats.median, 0, 'f', 2).arg(stats.worst, 0, 'f', 2));
    }

    {
        LoopWatch watch;
        const int before = store.count();
        owner = copyElsewhere(QByteArray(40 * 1024 * 1024, 'x'));
        waitFor([&] { return false; }, 3000);
        bench::print("clipboard: 40 MB of text copied elsewhere",
                     QStringLiteral("main thread held at most %1 ms; %2")
                         .arg(watch.longestMs(), 0, 'f', 0)
                         .arg(store.count() > before ? QStringLiteral("captured") : QStringLiteral("skipped (too large)")));
    }
    {
        QImage image(10000, 5000, QImage::Format_RGB32);
        image.fill(Qt::darkBlue);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        LoopWatch watch;
        const int before = store.count();
        owner = copyElsewhere(png, QStringLiteral("image/png"));
        waitFor([&] { return false; }, 3000);
        bench::print("clipboard: 50-megapixel image copied elsewhere",
                     QStringLiteral("main thread held at most %1 ms; %2")
                         .arg(watch.longestMs(), 0, 'f', 0)
                         .arg(store.count() > before ? QStringLiteral("captured") : QStringLiteral("skipped (too large)")));
    }
    owner.reset();
    return 0;
}
