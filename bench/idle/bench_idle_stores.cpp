// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The three long-lived stores with nothing happening: clipboard history on the X
// clipboard, the watched Downloads folder and an idle countdown timer. Prints the CPU
// time used and how often the process woke up. LEDGEWISE_BENCH_SECONDS shortens the
// default 60 s; run it on a display (tests/support/isolated.sh --display ...).
#include "bench/support/bench_support.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/downloads/downloads_store.h"
#include "modules/timer/timer_session.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "platform/dbus/freedesktop_notifications.h"
#include "platform/filesystem/folder_watcher.h"
#include "platform/x11/system_bell.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>

using namespace ledgewise;

namespace {

void measure(const char *name, int seconds)
{
    const double cpuBefore = bench::cpuMilliseconds();
    const long long wakesBefore = bench::wakeUps();
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double cpu = bench::cpuMilliseconds() - cpuBefore;
    // The one wake-up that ends the measurement is not the stores'.
    const long long wakes = bench::wakeUps() - wakesBefore - 1;
    bench::print(name,
        QStringLiteral("%1 ms CPU, %2 wake-ups in %3 s (%4 a second)")
            .arg(cpu, 0, 'f', 1)
            .arg(wakes)
            .arg(seconds)
            .arg(double(wakes) / seconds, 0, 'f', 2));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const int seconds = qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS") > 0
        ? qEnvironmentVariableIntValue("LEDGEWISE_BENCH_SECONDS")
        : 60;

    QTemporaryDir data;
    QTemporaryDir downloads;
    QtPasteboard pasteboard;
    FreedesktopNotifications notifications;
    X11Bell bell;
    ClipboardStore clipboard(pasteboard, data.path(), 50, true);
    TimerSession timer(&notifications, &bell);
    DownloadsStore downloadsStore(downloads.path(), std::make_unique<InotifyFolderWatcher>());
    // Let start-up work settle before measuring.
    QTimer::singleShot(500, &app, &QCoreApplication::quit);
    QCoreApplication::exec();

    measure("idle: clipboard, downloads and timer", seconds);
    timer.start(3600);
    measure("idle with a countdown running", seconds);
    timer.cancel();
    return 0;
}
