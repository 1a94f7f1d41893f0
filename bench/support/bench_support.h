// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Small helpers shared by the benchmarks: timing statistics, process counters and the
// files a measured run starts from.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ledgewise::bench {

struct Stats {
    double median = 0;
    double worst = 0;
    double mean = 0;
};

inline Stats statsOf(QList<double> samples)
{
    Stats stats;
    if (samples.isEmpty())
        return stats;
    std::sort(samples.begin(), samples.end());
    stats.median = samples[samples.size() / 2];
    stats.worst = samples.last();
    double sum = 0;
    for (double s : samples)
        sum += s;
    stats.mean = sum / samples.size();
    return stats;
}

// CPU time (user + system) of this process, in milliseconds.
inline double cpuMilliseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000.0
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000.0;
}

// Times this process's threads went to sleep and were woken again (voluntary context
// switches, summed over every thread).
inline long long wakeUps()
{
    long long total = 0;
    const QStringList threads = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile status(QStringLiteral("/proc/self/task/%1/status").arg(thread));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                total += line.mid(24).trimmed().toLongLong();
        }
    }
    return total;
}

// Resident memory (VmRSS) of process `pid`, in kilobytes; 0 once it is gone.
inline long long residentKilobytes(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

// A history of 50 short texts, as the next start of Ledgewise reads it.
inline void fillHistory()
{
    const QString folder
        = QDir(qEnvironmentVariable("XDG_DATA_HOME", QDir::homePath() + "/.local/share")).filePath("Ledgewise");
    QDir().mkpath(folder);
    QFile file(QDir(folder).filePath("clipboard.json"));
    file.open(QIODevice::WriteOnly);
    QByteArray json = "[";
    for (int i = 0; i < 50; ++i) {
        json += (i ? "," : "")
            + QStringLiteral(R"({"id":"%1","createdAt":%2,"kind":"text","text":"entry %3 %4","isPinned":false})")
                  .arg(QStringLiteral("00000000-0000-4000-8000-%1").arg(i, 12, 10, QLatin1Char('0')))
                  .arg(785000000 + i)
                  .arg(i)
                  .arg(QString(200, QLatin1Char('x')))
                  .toUtf8();
    }
    file.write(json + "]");
}

// `files` one-byte files named file-N.bin in `folder`, written with plain system calls
// so that making them costs the measured run as little as possible.
inline void fillFolder(const QString &folder, int files)
{
    for (int i = 0; i < files; ++i) {
        const int fd
            = ::open(QFile::encodeName(QDir(folder).filePath(QStringLiteral("file-%1.bin").arg(i))).constData(),
                O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (fd >= 0) {
            [[maybe_unused]] const auto written = ::write(fd, "x", 1);
            ::close(fd);
        }
    }
}

// Runs xdotool on the display the benchmark runs on, to its end; its output, trimmed.
inline QString xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// How wide the surface of `side` ("left" or "right") is on screen; 0 while it is not shown.
inline int surfaceWidth(const QString &side)
{
    const QString id = xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                                   QStringLiteral("Ledgewise %1 surface").arg(side) })
                           .section(QLatin1Char('\n'), 0, 0);
    if (id.isEmpty())
        return 0;
    for (const QString &line :
        xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), id }).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("WIDTH=")))
            return line.mid(6).toInt();
    }
    return 0;
}

inline void print(const char *name, const QString &figure)
{
    std::printf("%-48s %s\n", name, qPrintable(figure));
    std::fflush(stdout);
}

} // namespace ledgewise::bench
