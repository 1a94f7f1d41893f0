// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Saving a large drop while the interface runs: a 16 ms timer on the main thread (a
// frame) while a 1 GiB file, then a folder of 4,000 files, is saved into a folder,
// and how long a cancel takes to leave nothing behind. Prints its figures.
#include "bench/support/bench_support.h"
#include "dragdrop/drop_saves.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace ledgewise;

namespace {

constexpr qint64 MiB = qint64(1) << 20;

bool makeFile(const QString &path, qint64 size, char fill)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray chunk(MiB, fill);
    for (qint64 written = 0; written < size; written += MiB) {
        if (file.write(chunk.constData(), std::min(MiB, size - written)) < 0)
            return false;
    }
    return true;
}

struct Run {
    double seconds = 0;
    int ticks = 0;
    int late = 0;
    qint64 longestGapMs = 0;
};

// Saves `payload` into `folder` with a 16 ms timer running; cancels once the save is
// `cancelAt` through, when given.
Run saveWithTicks(
    const DropPayload &payload, const QString &folder, double cancelAt = 2.0, double *cancelSeconds = nullptr)
{
    DropSaves saves([folder] { return folder; });
    QEventLoop loop;
    QElapsedTimer sinceTick, took, sinceCancel;
    Run run;
    QTimer frame;
    frame.setTimerType(Qt::PreciseTimer);
    frame.setInterval(16);
    QObject::connect(&frame, &QTimer::timeout, [&] {
        const qint64 gap = sinceTick.restart();
        ++run.ticks;
        if (gap > 16 + 8)
            ++run.late;
        run.longestGapMs = std::max(run.longestGapMs, gap);
    });
    QObject::connect(&saves, &DropSaves::changed, [&] {
        if (!sinceCancel.isValid() && saves.fraction() >= cancelAt) {
            sinceCancel.start();
            saves.cancel();
        }
    });
    QObject::connect(&saves, &DropSaves::finished, &loop, &QEventLoop::quit);
    took.start();
    sinceTick.start();
    frame.start();
    saves.save(payload);
    loop.exec();
    run.seconds = took.elapsed() / 1000.0;
    if (cancelSeconds && sinceCancel.isValid())
        *cancelSeconds = sinceCancel.elapsed() / 1000.0;
    return run;
}

DropPayload filesPayload(const QString &path)
{
    return DropPayload { DropPayload::Kind::files, { QUrl::fromLocalFile(path) }, {}, std::nullopt, std::nullopt };
}

void print(const char *what, double megabytes, const Run &run)
{
    const double onTime = run.ticks ? 100.0 * (run.ticks - run.late) / run.ticks : 0;
    std::printf("%-34s %7.0f MiB in %6.2f s (%6.0f MiB/s); frames %4d, %5.1f %% on time, longest gap %3lld ms\n", what,
        megabytes, run.seconds, megabytes / run.seconds, run.ticks, onTime, run.longestGapMs);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir source(QDir::home().filePath(QStringLiteral("bench-drop-source-XXXXXX")));
    QTemporaryDir downloads(QDir::home().filePath(QStringLiteral("bench-drop-downloads-XXXXXX")));
    if (!source.isValid() || !downloads.isValid())
        return 1;

    std::printf("Saving a drop (main thread: a 16 ms frame timer; late = more than 8 ms late)\n");
    const QString big = source.filePath(QStringLiteral("disk.img"));
    if (!makeFile(big, 1024 * MiB, 'x'))
        return 1;
    print("one file of 1 GiB", 1024, saveWithTicks(filesPayload(big), downloads.path()));

    const QString folder = source.filePath(QStringLiteral("photos"));
    QDir().mkpath(folder);
    for (int i = 0; i < 4000; ++i)
        makeFile(QDir(folder).filePath(QStringLiteral("IMG_%1.jpg").arg(i, 4, 10, QLatin1Char('0'))), 64 * 1024, 'p');
    print(
        "a folder of 4,000 files of 64 KiB", 4000 * 64 / 1024.0, saveWithTicks(filesPayload(folder), downloads.path()));

    QTemporaryDir cancelled(QDir::home().filePath(QStringLiteral("bench-drop-cancel-XXXXXX")));
    double cancelSeconds = 0;
    const Run run = saveWithTicks(filesPayload(big), cancelled.path(), 0.3, &cancelSeconds);
    const qsizetype left = QDir(cancelled.path())
                               .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
                               .size();
    std::printf(
        "cancel of 1 GiB at 30 %%: ended %.0f ms after Cancel, %lld entries left in the folder, longest gap %lld ms\n",
        cancelSeconds * 1000, static_cast<long long>(left), run.longestGapMs);
    return 0;
}
