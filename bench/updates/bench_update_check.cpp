// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How long an update check takes against a server on this machine (a one-release feed
// and a 200-release one), and what it leaves behind: resident memory and threads
// before the first check and after many, since the network machinery is meant to exist
// only while a check runs.

#include "bench/support/bench_support.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/recording_url_opener.h"
#include "tests/updates/feed_server.h"
#include "updates/update_controller.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace ledgewise;

namespace {

int threadCount()
{
    return int(QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

QByteArray bigFeed(int releases)
{
    QByteArray items;
    for (int i = 0; i < releases; ++i) {
        const QByteArray version = "0.0." + QByteArray::number(i);
        items += "<item><title>Ledgewise " + version + "</title><link>https://ledgewise.org/download/" + version
            + "</link><description>" + QByteArray(300, 'x') + "</description><enclosure url=\"https://ledgewise.org/f/"
            + version + ".tar.gz\" ac:version=\"" + version + "\" length=\"1\"/></item>\n";
    }
    return "<rss version=\"2.0\" xmlns:ac=\"https://ledgewise.org/ns\"><channel><title>Ledgewise</title>\n" + items
        + "</channel></rss>\n";
}

// Median and worst milliseconds of `rounds` checks from the button to the shown result.
bench::Stats timeChecks(UpdateController &controller, int rounds)
{
    QList<double> samples;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer clock;
        clock.start();
        // An event loop that ends with the result, rather than polling for it (a poll
        // would add its own naps to every figure).
        QEventLoop loop;
        QObject::connect(&controller, &UpdateController::changed, &loop, [&] {
            if (controller.state() != UpdateController::State::checking)
                loop.quit();
        });
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        controller.checkForUpdates();
        if (controller.state() == UpdateController::State::checking)
            loop.exec();
        if (controller.state() == UpdateController::State::checking)
            break;
        samples.append(clock.nsecsElapsed() / 1e6);
        // What the check let go of goes now, as it would back in the program's own loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return bench::statsOf(samples);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int rounds = qEnvironmentVariableIntValue("LEDGEWISE_BENCH_ROUNDS") > 0
        ? qEnvironmentVariableIntValue("LEDGEWISE_BENCH_ROUNDS")
        : 50;
    testing::FeedServer server;
    if (!server.listen())
        return 1;
    FakeKeyValueStore settings;
    RecordingUrlOpener opener;
    UpdateController::Options options = UpdateController::standardOptions();
    options.feed = QUrl(server.url());
    UpdateController controller(settings, opener, options);

    QCoreApplication::processEvents();
    const long long residentBefore = bench::residentKilobytes(QCoreApplication::applicationPid());
    const int threadsBefore = threadCount();

    server.body = testing::appcastOf("0.2.0");
    timeChecks(controller, 1);
    QTest::qWait(200);
    const long long residentAfterOne = bench::residentKilobytes(QCoreApplication::applicationPid());
    const bench::Stats small = timeChecks(controller, rounds);
    std::printf("update check, one-release feed (%lld bytes): median %.2f ms, worst %.2f ms over %d checks\n",
        qint64(server.body.size()), small.median, small.worst, rounds);

    server.body = bigFeed(200);
    const bench::Stats big = timeChecks(controller, rounds);
    std::printf("update check, 200-release feed (%lld bytes): median %.2f ms, worst %.2f ms over %d checks\n",
        qint64(server.body.size()), big.median, big.worst, rounds);

    // Let the released network machinery go.
    QTest::qWait(500);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const long long residentAfter = bench::residentKilobytes(QCoreApplication::applicationPid());
    std::printf("update checks leave behind: resident %+lld KiB after the first check, %+lld KiB more after %d more"
                " (%lld -> %lld -> %lld KiB); threads %d -> %d\n",
        residentAfterOne - residentBefore, residentAfter - residentAfterOne, 2 * rounds, residentBefore,
        residentAfterOne, residentAfter, threadsBefore, threadCount());
    return controller.state() == UpdateController::State::upToDate ? 0 : 1;
}
