// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Does a big Downloads folder hold up the main thread? A 16 ms timer runs on the main
// thread for 5 s while another thread appends to a file every 10 ms, in a folder of
// 10,000 and of 100,000 files, with the store watching it from its creation (its first
// listing falls inside the 5 s). Prints how many ticks ran, how many came on time (at
// most 8 ms later than 16 ms after the tick before) and the longest gap between two.
#include "bench/support/bench_support.h"
#include "modules/downloads/downloads_store.h"
#include "platform/filesystem/folder_watcher.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

using namespace ledgewise;

namespace {

constexpr int tickMs = 16;
constexpr int writeEveryMs = 10;
constexpr int runMs = 5000;

// Times every event the main thread handles: the longest one is what the store itself
// cost the main thread at worst, apart from what the machine's load adds to the gaps.
class TimingApplication final : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;
    bool notify(QObject *receiver, QEvent *event) override
    {
        QElapsedTimer timer;
        timer.start();
        const bool result = QCoreApplication::notify(receiver, event);
        const qint64 ns = timer.nsecsElapsed();
        if (ns > longestNs && receiver->thread() == thread()) {
            longestNs = ns;
            longestWhat = QStringLiteral("%1 to %2")
                              .arg(int(event->type()))
                              .arg(QString::fromLatin1(receiver->metaObject()->className()));
        }
        return result;
    }
    qint64 longestNs = 0;
    QString longestWhat;
};

// Appends 4 KiB every 10 ms to one file, as a browser writes a download, until stopped.
class Writer
{
public:
    explicit Writer(const QString &path)
        : m_thread([this, path = QFile::encodeName(path)] {
            const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
            const QByteArray block(4096, 'x');
            auto due = std::chrono::steady_clock::now();
            while (fd >= 0 && !m_stop.load()) {
                [[maybe_unused]] const auto written = ::write(fd, block.constData(), size_t(block.size()));
                ++m_writes;
                due += std::chrono::milliseconds(writeEveryMs);
                std::this_thread::sleep_until(due);
            }
            if (fd >= 0)
                ::close(fd);
        })
    { }
    ~Writer()
    {
        m_stop.store(true);
        m_thread.join();
    }
    int writes() const { return m_writes.load(); }

private:
    std::atomic<bool> m_stop { false };
    std::atomic<int> m_writes { 0 };
    std::thread m_thread;
};

void run(TimingApplication &app, int files)
{
    QTemporaryDir folder;
    bench::fillFolder(folder.path(), files);
    const QString growing = folder.filePath(QStringLiteral("film.mkv.part"));

    QElapsedTimer clock;
    QList<qint64> ticks;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.setInterval(tickMs);
    QObject::connect(&ticker, &QTimer::timeout, [&] { ticks.append(clock.elapsed()); });

    clock.start();
    ticker.start();
    DownloadsStore store(folder.path(), std::make_unique<InotifyFolderWatcher>());
    const qint64 createdAfter = clock.elapsed();
    qint64 listedAfter = -1;
    QObject::connect(&store, &DownloadsStore::itemsChanged, [&] {
        if (listedAfter < 0 && !store.items().isEmpty())
            listedAfter = clock.elapsed();
    });
    int writes = 0;
    app.longestNs = 0;
    {
        Writer writer(growing);
        QTimer::singleShot(runMs, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        writes = writer.writes();
    }
    ticker.stop();
    const qint64 ranMs = clock.elapsed();

    const int expected = int(ranMs / tickMs);
    int onTime = 0;
    qint64 previous = 0;
    qint64 longestGap = 0;
    qint64 longestGapEnd = 0;
    for (int i = 0; i < ticks.size(); ++i) {
        if (ticks[i] - previous <= tickMs + tickMs / 2)
            ++onTime;
        if (ticks[i] - previous > longestGap) {
            longestGap = ticks[i] - previous;
            longestGapEnd = ticks[i];
        }
        previous = ticks[i];
    }

    const QString label = QStringLiteral("downloads, %1 files, writer every %2 ms").arg(files).arg(writeEveryMs);
    bench::print(qPrintable(label + QStringLiteral(": ticks")),
        QStringLiteral("%1 of %2 ran, %3 on time (%4 %), longest gap %5 ms (ending at %6 ms)")
            .arg(ticks.size())
            .arg(expected)
            .arg(onTime)
            .arg(std::min(100.0, 100.0 * onTime / expected), 0, 'f', 1)
            .arg(longestGap)
            .arg(longestGapEnd));
    const DownloadItem first = store.items().value(0);
    bench::print(qPrintable(label + QStringLiteral(": store")),
        QStringLiteral(
            "created in %1 ms, first list after %2 ms, longest event %3 ms (%4), %5 writes; shown first: %6 (%7)")
            .arg(createdAfter)
            .arg(listedAfter)
            .arg(app.longestNs / 1e6, 0, 'f', 1)
            .arg(app.longestWhat)
            .arg(writes)
            .arg(first.name, rawValue(first.status)));
}

} // namespace

int main(int argc, char *argv[])
{
    TimingApplication app(argc, argv);
    for (int files : { 10000, 100000 })
        run(app, files);
    return 0;
}
