// The whole program as a user runs it, measured from outside on the current display
// (run it on Xvfb: tests/support/isolated.sh --display ...):
//  - start-up: from launch to the first surface window mapped;
//  - resident memory with both surfaces shown and a 50-entry clipboard history;
//  - CPU time and wake-ups a second with the surfaces idle (LEDGEWISE_BENCH_SECONDS, 60 s).
#include "bench/support/bench_support.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <unistd.h>

using namespace ledgewise;

namespace {

QString findWindow(const QString &name)
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), name});
    xdotool.waitForFinished(5000);
    return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
}

long long statusValue(qint64 pid, const char *key)
{
    long long total = 0;
    const QStringList threads = QDir(QStringLiteral("/proc/%1/task").arg(pid)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile status(QStringLiteral("/proc/%1/task/%2/status").arg(pid).arg(thread));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith(key))
                total += line.mid(qstrlen(key)).trimmed().split(' ').first().toLongLong();
        }
        if (qstrcmp(key, "VmRSS:") == 0)
            break; // memory is per process; every thread reports the same
    }
    return total;
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

void fillHistory()
{
    const QString folder = QDir(qEnvironmentVariable("XDG_DATA_HOME", QDir::homePath() + "/.local/share")).filePath("Ledgewise");
    QDir().mkpath(folder);
    QFile file(QDir(folder).filePath("clipboard.json"));
    file.open(QIODevice::WriteOnly);
    QByteArray json = "[";
    for (int i = 0; i < 50; ++i) {
        json += (i ? "," : "") + QStringLiteral(R"({"id":"%1","createdAt":%2,"kind":"text","text":"entry %3 %4","isPinned":false})")
                                      .arg(QStringLiteral("00000000-0000-4000-8000-%1").arg(i, 12, 10, QLatin1Char('0')))
                                      .arg(785000000 + i).arg(i).arg(QString(200, QLatin1Char('x'))).toUtf8();
    }
    file.write(json + "]");
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString program = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(LEDGEWISE_BINARY);
    const int seconds = qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS") > 0 ? qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS") : 60;
    fillHistory();

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
    bench::print("app: start to first surface mapped", QStringLiteral("%1 ms (polled every ~5 ms)").arg(clock.elapsed()));

    QThread::msleep(1500);
    const qint64 pid = ledgewise.processId();
    bench::print("app: resident memory, two surfaces, 50 entries",
                 QStringLiteral("%1 MB").arg(statusValue(pid, "VmRSS:") / 1024.0, 0, 'f', 1));

    const double cpuBefore = cpuMs(pid);
    const long long wakesBefore = statusValue(pid, "voluntary_ctxt_switches:");
    QThread::sleep(seconds);
    const long long wakes = statusValue(pid, "voluntary_ctxt_switches:") - wakesBefore;
    bench::print("app: idle with surfaces shown",
                 QStringLiteral("%1 ms CPU, %2 wake-ups in %3 s (%4 a second)")
                     .arg(cpuMs(pid) - cpuBefore, 0, 'f', 1).arg(wakes).arg(seconds).arg(double(wakes) / seconds, 0, 'f', 2));

    ledgewise.terminate();
    ledgewise.waitForFinished(10000);
    return 0;
}
