// One full rescan of a Downloads folder of 100, 1,000 and 10,000 files.
#include "bench/support/bench_support.h"
#include "modules/downloads/downloads_store.h"
#include "platform/filesystem/folder_watcher.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace ledgewise;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    for (int files : {100, 1000, 10000}) {
        QTemporaryDir folder;
        for (int i = 0; i < files; ++i) {
            QFile file(folder.filePath(QStringLiteral("file-%1.bin").arg(i)));
            file.open(QIODevice::WriteOnly);
            file.write("x");
        }
        DownloadsStore store(folder.path(), nullptr);
        QList<double> samples;
        for (int run = 0; run < 21; ++run) {
            QElapsedTimer timer;
            timer.start();
            store.refresh();
            samples.append(timer.nsecsElapsed() / 1e6);
        }
        const auto stats = bench::statsOf(samples);
        bench::print(qPrintable(QStringLiteral("downloads rescan, %1 files").arg(files)),
                     QStringLiteral("median %1 ms, worst %2 ms (21 runs)").arg(stats.median, 0, 'f', 2).arg(stats.worst, 0, 'f', 2));
    }
    return 0;
}
