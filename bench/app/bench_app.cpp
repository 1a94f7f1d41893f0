// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The whole program as a user runs it, measured from outside on the current display
// (run it on Xvfb: tests/support/isolated.sh --display ...):
//  - start-up: from launch to the first surface window mapped;
//  - resident memory with both surfaces shown and a 50-entry clipboard history;
//  - CPU time and wake-ups a second with the surfaces idle (LEDGEWISE_BENCH_SECONDS, 60 s);
//  - the same with a countdown running, started from the timer panel as a user starts it
//    (LEDGEWISE_BENCH_COUNTDOWN_SECONDS, 20 s): about one wake-up a second is expected.
// Wake-ups are the voluntary context switches of all threads, printed in all and by
// thread (the main thread carries the program's name; Qt's X reader is QXcbEventQueue).
#include "app/preferences_codec.h"
#include "bench/support/bench_support.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>

#include <unistd.h>

using namespace ledgewise;
using bench::xdotool;

namespace {

QString findWindow(const QString &name)
{
    return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), name });
}

double cpuMs(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = stat.readAll().split(')').last().trimmed().split(' ');
    // utime and stime are fields 14 and 15 of the whole line, 12 and 13 after the name.
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) * 1000.0 / sysconf(_SC_CLK_TCK);
}

// The left surface holds only the timer, with square-ish corners and without
// animation, so that its first preset sits at a known place once it is open.
void writePreferences()
{
    ledgewise::Preferences preferences;
    preferences.leftModuleIDs = { ledgewise::ModuleID::timer };
    preferences.style = ledgewise::NotchStyle::classic;
    preferences.animateInterface = false;
    QSettings settings(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
                           .filePath(QStringLiteral("Ledgewise/Ledgewise.conf")),
        QSettings::NativeFormat);
    settings.setValue(QStringLiteral("ledgewise.preferences"), *ledgewise::encodePreferences(preferences));
}

// Opens the left surface, presses its 5-minute preset and closes it again; true once
// the surface rests as a running countdown (the active width, 132 for classic).
bool startCountdown()
{
    const auto click = [](int x, int y) {
        xdotool({ QStringLiteral("mousemove"), QString::number(x), QString::number(y), QStringLiteral("click"),
            QStringLiteral("1") });
        QThread::msleep(300);
    };
    click(80 + 42, 15); // open
    click(80 + 12 + 16, 48); // the first preset, "5m", under the panel's title
    click(756, 600); // elsewhere: close
    for (int i = 0; i < 20 && bench::surfaceWidth(QStringLiteral("left")) != 132; ++i)
        QThread::msleep(100);
    return bench::surfaceWidth(QStringLiteral("left")) == 132;
}

// Voluntary context switches of each thread, by thread id, with the thread's name.
QMap<QString, QPair<QString, long long>> wakesByThread(qint64 pid)
{
    QMap<QString, QPair<QString, long long>> threads;
    const QString task = QStringLiteral("/proc/%1/task").arg(pid);
    for (const QString &tid : QDir(task).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(task + QLatin1Char('/') + tid + QStringLiteral("/status"));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        QString name;
        long long wakes = 0;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("Name:"))
                name = QString::fromUtf8(line.mid(5).trimmed());
            else if (line.startsWith("voluntary_ctxt_switches:"))
                wakes = line.mid(24).trimmed().toLongLong();
        }
        threads.insert(tid, { name, wakes });
    }
    return threads;
}

void measureIdle(qint64 pid, int seconds, const char *label)
{
    const double cpuBefore = cpuMs(pid);
    const auto threadsBefore = wakesByThread(pid);
    QThread::sleep(seconds);
    const auto threadsAfter = wakesByThread(pid);
    // Counted thread by thread: a worker thread that ended meanwhile takes its whole
    // count out of the process's sum, which would hide wake-ups of the others.
    long long wakes = 0;
    QStringList perThread;
    for (auto it = threadsAfter.cbegin(); it != threadsAfter.cend(); ++it) {
        const long long woke = it->second - threadsBefore.value(it.key()).second;
        wakes += woke;
        if (woke > 0)
            perThread.append(QStringLiteral("%1 %2").arg(it->first).arg(double(woke) / seconds, 0, 'f', 2));
    }
    bench::print(label,
        QStringLiteral("%1 ms CPU, %2 wake-ups in %3 s (%4 a second)")
            .arg(cpuMs(pid) - cpuBefore, 0, 'f', 1)
            .arg(wakes)
            .arg(seconds)
            .arg(double(wakes) / seconds, 0, 'f', 2));
    // Which threads woke: the main thread carries the process's name.
    bench::print((QByteArray(label) + ", a second by thread").constData(),
        perThread.isEmpty() ? QStringLiteral("none") : perThread.join(QStringLiteral(", ")));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString program = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(LEDGEWISE_BINARY);
    const int seconds = qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS") > 0
        ? qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS")
        : 60;
    bench::fillHistory();
    writePreferences();

    QProcess ledgewise;
    ledgewise.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer clock;
    clock.start();
    ledgewise.start(program, {});
    if (!ledgewise.waitForStarted(10000)) {
        std::printf("could not start %s\n", qPrintable(program));
        return 1;
    }
    while (findWindow(QStringLiteral("Ledgewise left surface")).isEmpty() && clock.elapsed() < 20000)
        QThread::msleep(5);
    bench::print(
        "app: start to first surface mapped", QStringLiteral("%1 ms (polled every ~5 ms)").arg(clock.elapsed()));

    QThread::msleep(1500);
    const qint64 pid = ledgewise.processId();
    bench::print("app: resident memory, two surfaces, 50 entries",
        QStringLiteral("%1 MB").arg(bench::residentKilobytes(pid) / 1024.0, 0, 'f', 1));

    measureIdle(pid, seconds, "app: idle with surfaces shown");

    const int countdownSeconds = qEnvironmentVariableIntValue("LEDGEWISE_BENCH_COUNTDOWN_SECONDS") > 0
        ? qEnvironmentVariableIntValue("LEDGEWISE_BENCH_COUNTDOWN_SECONDS")
        : 20;
    if (startCountdown()) {
        QThread::msleep(500);
        measureIdle(pid, countdownSeconds, "app: surfaces shown, a countdown running");
    } else {
        bench::print("app: surfaces shown, a countdown running", QStringLiteral("could not start the countdown"));
    }

    ledgewise.terminate();
    ledgewise.waitForFinished(10000);
    return 0;
}
