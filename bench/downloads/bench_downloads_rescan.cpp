// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// One full listing of a Downloads folder of 100, 1,000, 10,000 and 100,000 files,
// from the request to the new list on the main thread (the listing itself runs on the
// store's own thread).
#include "bench/support/bench_support.h"
#include "modules/downloads/downloads_store.h"
#include "platform/filesystem/folder_watcher.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>

using namespace ledgewise;

namespace {

void waitForListing(DownloadsStore &store)
{
    QEventLoop loop;
    QObject::connect(&store, &DownloadsStore::scanFinished, &loop, &QEventLoop::quit);
    if (store.isScanning())
        loop.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    for (int files : { 100, 1000, 10000, 100000 }) {
        QTemporaryDir folder;
        bench::fillFolder(folder.path(), files);
        DownloadsStore store(folder.path(), nullptr);
        waitForListing(store);
        const int runs = files >= 100000 ? 5 : 21;
        QList<double> samples;
        for (int run = 0; run < runs; ++run) {
            QElapsedTimer timer;
            timer.start();
            store.refresh();
            waitForListing(store);
            samples.append(timer.nsecsElapsed() / 1e6);
        }
        const auto stats = bench::statsOf(samples);
        bench::print(qPrintable(QStringLiteral("downloads listing, %1 files").arg(files)),
            QStringLiteral("median %1 ms, worst %2 ms (%3 runs, off the main thread)")
                .arg(stats.median, 0, 'f', 2)
                .arg(stats.worst, 0, 'f', 2)
                .arg(runs));
    }
    return 0;
}
