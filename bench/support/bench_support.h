#pragma once

// Small helpers shared by the benchmarks: timing statistics and process counters.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

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
    rusage usage{};
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

inline void print(const char *name, const QString &figure)
{
    std::printf("%-48s %s\n", name, qPrintable(figure));
    std::fflush(stdout);
}

} // namespace ledgewise::bench
