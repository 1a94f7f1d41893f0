// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Resident memory of Ledgewise beside the clipboard manager Linux users already run,
// both on the current display in one run (run it on Xvfb:
// tests/support/isolated.sh --display ...). Ledgewise starts with both surfaces and a
// 50-entry history; CopyQ (when installed: scripts/bench.sh installs it from Debian)
// starts with its own configuration in this sandbox; then another application makes
// 50 copies that both take in, then 50 large ones (4 MiB texts), and both are measured
// after each. Only resident figures are
// read from outside; neither program is driven otherwise.
#include "bench/support/bench_support.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

using namespace ledgewise;

namespace {

// Kilobyte figures of /proc/PID/smaps_rollup ("Rss", "Anonymous", "Pss"...) and VmRSS.
long long rollupKb(qint64 pid, const QByteArray &key)
{
    QFile rollup(QStringLiteral("/proc/%1/smaps_rollup").arg(pid));
    if (!rollup.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : rollup.readAll().split('\n')) {
        if (line.startsWith(key + ':'))
            return line.mid(key.size() + 1).trimmed().split(' ').first().toLongLong();
    }
    return -1;
}

QString residentFigure(qint64 pid)
{
    const long long rss = rollupKb(pid, "Rss");
    const long long anonymous = rollupKb(pid, "Anonymous");
    if (rss < 0)
        return QStringLiteral("not running");
    return QStringLiteral("%1 MB (%2 MB own heap and data, %3 MB mapped files: libraries, fonts; PSS %4 MB)")
        .arg(rss / 1024.0, 0, 'f', 1)
        .arg(anonymous / 1024.0, 0, 'f', 1)
        .arg((rss - anonymous) / 1024.0, 0, 'f', 1)
        .arg(rollupKb(pid, "Pss") / 1024.0, 0, 'f', 1);
}

bool surfaceShown(const QString &side)
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"),
        { QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
            QStringLiteral("Ledgewise %1 surface").arg(side) });
    xdotool.waitForFinished(5000);
    return !xdotool.readAllStandardOutput().trimmed().isEmpty();
}

// Another application copies `text`, and keeps offering it until the next copy.
void copyElsewhere(const QByteArray &text)
{
    QProcess xclip;
    xclip.setStandardOutputFile(QProcess::nullDevice());
    xclip.start(
        QStringLiteral("xclip"), { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i") });
    xclip.waitForStarted(5000);
    xclip.write(text);
    xclip.closeWriteChannel();
    // xclip goes to the background once it owns the clipboard.
    xclip.waitForFinished(5000);
}

QString copyqCount()
{
    QProcess copyq;
    copyq.start(QStringLiteral("copyq"), { QStringLiteral("count") });
    copyq.waitForFinished(10000);
    return QString::fromUtf8(copyq.readAllStandardOutput()).trimmed();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString program = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(LEDGEWISE_BINARY);
    bench::fillHistory();

    QProcess ledgewise;
    ledgewise.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    ledgewise.start(program, {});
    if (!ledgewise.waitForStarted(10000)) {
        std::printf("could not start %s\n", qPrintable(program));
        return 1;
    }
    QElapsedTimer clock;
    clock.start();
    while (!(surfaceShown(QStringLiteral("left")) && surfaceShown(QStringLiteral("right"))) && clock.elapsed() < 20000)
        QThread::msleep(50);
    QThread::sleep(2);
    bench::print("memory: Ledgewise, two surfaces, 50 entries", residentFigure(ledgewise.processId()));

    QProcess copyq;
    const bool haveCopyq = !QStandardPaths::findExecutable(QStringLiteral("copyq")).isEmpty();
    if (haveCopyq) {
        copyq.setProcessChannelMode(QProcess::MergedChannels);
        copyq.setStandardOutputFile(QDir::temp().filePath(QStringLiteral("ledgewise-bench-copyq.log")));
        copyq.start(QStringLiteral("copyq"), {});
        copyq.waitForStarted(10000);
        clock.restart();
        while (copyqCount().isEmpty() && clock.elapsed() < 20000)
            QThread::msleep(200);
        QThread::sleep(2);
        bench::print("memory: CopyQ started, empty", residentFigure(copyq.processId()));
    } else {
        bench::print("memory: CopyQ", QStringLiteral("not installed (apt-get install copyq): not compared"));
    }

    // The same 50 copies for both: texts like the history's, each offered in turn.
    for (int i = 0; i < 50; ++i) {
        copyElsewhere(QStringLiteral("copy %1 %2").arg(i).arg(QString(200, QLatin1Char('y'))).toUtf8());
        QThread::msleep(150);
    }
    QThread::sleep(3);
    bench::print("memory: Ledgewise after 50 copies", residentFigure(ledgewise.processId()));
    if (haveCopyq) {
        bench::print("memory: CopyQ after 50 copies",
            QStringLiteral("%1, %2 entries").arg(residentFigure(copyq.processId()), copyqCount()));
    }

    // Then 50 large copies: texts of 4 MiB, each different (Ledgewise keeps 1 MiB of each).
    const QByteArray large(4 * 1024 * 1024, 'z');
    for (int i = 0; i < 50; ++i) {
        copyElsewhere(QByteArray::number(i).rightJustified(12, '0') + large);
        QThread::msleep(300);
    }
    QThread::sleep(5);
    bench::print("memory: Ledgewise after 50 large copies", residentFigure(ledgewise.processId()));
    if (haveCopyq) {
        bench::print("memory: CopyQ after 50 large copies",
            QStringLiteral("%1, %2 entries").arg(residentFigure(copyq.processId()), copyqCount()));
        QProcess::execute(QStringLiteral("copyq"), { QStringLiteral("exit") });
        if (!copyq.waitForFinished(10000))
            copyq.kill();
    }

    ledgewise.terminate();
    ledgewise.waitForFinished(10000);
    // The last xclip goes with the display.
    return 0;
}
