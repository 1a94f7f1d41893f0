// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_math.h"
#include "modules/timer/timer_session.h"
#include "platform/dbus/user_notifications.h"
#include "platform/x11/system_bell.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>

using namespace ledgewise;

namespace {

class FakeNotifications final : public UserNotifications
{
public:
    void requestAuthorization(QObject *, std::function<void(bool)> answer) override
    {
        ++authorizationRequests;
        answer(granted);
    }
    void add(const NotificationRequest &request) override { pending.insert(request.identifier, request); }
    void removePending(const QString &identifier) override
    {
        ++removals;
        pending.remove(identifier);
    }

    bool granted = true;
    int authorizationRequests = 0;
    int removals = 0;
    QMap<QString, NotificationRequest> pending;
};

class CountingBell final : public SystemBell
{
public:
    void ring() override { ++rings; }
    int rings = 0;
};

struct Fixture {
    Fixture()
        : session(&notifications, &bell, [this] { return now; })
    { }
    void advance(double seconds) { now += qint64(seconds * 1000); }

    qint64 now = 1'800'000'000'000;
    FakeNotifications notifications;
    CountingBell bell;
    TimerSession session;
};

const QString id = QStringLiteral("ledgewise.timer.complete");

} // namespace

class TestTimerSession : public QObject
{
    Q_OBJECT

private slots:
    void clockTexts_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0.0 << "0:00";
        QTest::newRow("0.2") << 0.2 << "0:01";
        QTest::newRow("59.01") << 59.01 << "1:00";
        QTest::newRow("60") << 60.0 << "1:00";
        QTest::newRow("61") << 61.0 << "1:01";
        QTest::newRow("299.4") << 299.4 << "5:00";
        QTest::newRow("600") << 600.0 << "10:00";
        QTest::newRow("10800") << 10800.0 << "180:00";
    }
    void clockTexts()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(TimerMath::formatted(seconds), text);
    }

    // The clock text of something that is not a number of seconds stops the program,
    // in every build, before any conversion happens.
    void clockTextOfANonNumberStopsTheProgram_data()
    {
        QTest::addColumn<QString>("seconds");
        QTest::newRow("nan") << "nan";
        QTest::newRow("inf") << "inf";
        QTest::newRow("-inf") << "-inf";
        QTest::newRow("2^63") << "9223372036854775808";
        QTest::newRow("1e19") << "1e19";
        QTest::newRow("-1e19") << "-1e19";
    }
    void clockTextOfANonNumberStopsTheProgram()
    {
        QFETCH(QString, seconds);
        QProcess helper;
        helper.start(QCoreApplication::applicationFilePath(), { QStringLiteral("--formatted"), seconds });
        QVERIFY(helper.waitForFinished(20000));
        QCOMPARE(helper.exitStatus(), QProcess::CrashExit);
        QVERIFY(helper.readAllStandardOutput().isEmpty());
        const QByteArray said = helper.readAllStandardError();
        QVERIFY2(said.contains("TimerMath::formatted"), said.constData());
    }

    void clockTextOfTheLargestNumbersStillWorks()
    {
        QProcess helper;
        helper.start(
            QCoreApplication::applicationFilePath(), { QStringLiteral("--formatted"), QStringLiteral("9e15") });
        QVERIFY(helper.waitForFinished(20000));
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), 0);
        QCOMPARE(helper.readAllStandardOutput(), QByteArray("150000000000000:00\n"));
        QCOMPARE(TimerMath::formatted(-9223372036854775808.0).isEmpty(), false);
    }

    void freshSessionIsIdle()
    {
        Fixture f;
        QVERIFY(!f.session.isRunning());
        QCOMPARE(f.session.remaining(), 0.0);
        QCOMPARE(f.session.lastPresetMinutes(), 5);
        QVERIFY(!f.session.isTicking());
        QCOMPARE(f.notifications.authorizationRequests, 0);
    }

    void startShowsTheFullDurationAtOnce()
    {
        Fixture f;
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        f.session.start(300);
        QCOMPARE(f.session.remaining(), 300.0);
        QCOMPARE(f.session.remainingText(), QStringLiteral("5:00"));
        QCOMPARE(f.session.endDate(), f.now + 300'000);
        QVERIFY(f.session.isTicking());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(f.notifications.pending.size(), 1);
        const NotificationRequest request = f.notifications.pending.value(id);
        QCOMPARE(request.title, QStringLiteral("Timer finished"));
        QCOMPARE(request.body, QStringLiteral("Ledgewise"));
        QCOMPARE(request.delaySeconds, 300.0);
    }

    void pulsesRecomputeFromTheEndDate()
    {
        Fixture f;
        f.session.start(300);
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        f.advance(2.5);
        f.session.pulse();
        QCOMPARE(f.session.remaining(), 297.5);
        QCOMPARE(f.session.remainingText(), QStringLiteral("4:58"));
        QCOMPARE(changes.count(), 0); // not once a second
    }

    void theEndBeepsOnceAndGoesIdle()
    {
        Fixture f;
        f.session.start(10);
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        f.advance(12);
        f.session.pulse();
        QCOMPARE(f.session.remaining(), 0.0);
        QVERIFY(!f.session.isRunning());
        QVERIFY(!f.session.isTicking());
        QCOMPARE(f.bell.rings, 1);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(f.notifications.pending.size(), 1); // left for the desktop to show
        f.advance(5);
        f.session.pulse();
        QCOMPARE(f.session.remaining(), 0.0);
        QCOMPARE(f.bell.rings, 1);
    }

    void zeroDurationFinishesAtOnce()
    {
        Fixture f;
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        f.session.start(0);
        QCOMPARE(f.bell.rings, 1);
        QCOMPARE(changes.count(), 2);
        QVERIFY(!f.session.isRunning());
        QCOMPARE(f.notifications.pending.value(id).delaySeconds, 1.0);
    }

    void restartKeepsOneTickerAndOnePendingNotification()
    {
        Fixture f;
        f.session.start(300);
        f.advance(10);
        f.session.start(600);
        QCOMPARE(f.session.endDate(), f.now + 600'000);
        QCOMPARE(f.session.remaining(), 600.0);
        QVERIFY(f.session.isTicking());
        QCOMPARE(f.notifications.pending.size(), 1);
        QCOMPARE(f.notifications.pending.value(id).delaySeconds, 600.0);
        QCOMPARE(f.notifications.removals, 2);
        QCOMPARE(f.bell.rings, 0);
    }

    void cancelStopsWithoutBeepAndWithdraws()
    {
        Fixture f;
        f.session.start(300);
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        f.session.cancel();
        QVERIFY(!f.session.isRunning());
        QCOMPARE(f.session.remaining(), 0.0);
        QVERIFY(!f.session.isTicking());
        QVERIFY(f.notifications.pending.isEmpty());
        QCOMPARE(f.bell.rings, 0);
        QCOMPARE(changes.count(), 1);
    }

    void cancelWhileIdleOnlyAnnounces()
    {
        Fixture f;
        QSignalSpy changes(&f.session, &TimerSession::timerDidChange);
        QSignalSpy ends(&f.session, &TimerSession::endDateChanged);
        QSignalSpy remaining(&f.session, &TimerSession::remainingChanged);
        f.session.cancel();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(ends.count(), 0);
        QCOMPARE(remaining.count(), 0);
    }

    void refusedPermissionStillRunsAndBeeps()
    {
        Fixture f;
        f.notifications.granted = false;
        f.session.start(5);
        QVERIFY(f.notifications.pending.isEmpty());
        f.advance(5);
        f.session.pulse();
        QCOMPARE(f.bell.rings, 1);
    }

    void tickerRunsOnItsOwnEverySecond()
    {
        TimerSession session(nullptr, nullptr);
        QSignalSpy remaining(&session, &TimerSession::remainingChanged);
        session.start(1.5);
        QTRY_VERIFY_WITH_TIMEOUT(!session.isRunning(), 4000);
        QCOMPARE(session.remaining(), 0.0);
        QVERIFY(remaining.count() >= 2);
    }

    void eachTickFallsJustAfterTheClockTextChanges()
    {
        Fixture f;
        QSignalSpy ticks(&f.session, &TimerSession::ticked);
        f.session.start(300);
        QCOMPARE(ticks.count(), 1); // the first pulse, inside start
        // "5:00" holds until 299 s are left; the tick comes 5 ms after that.
        QCOMPARE(f.session.nextTickInMs().value_or(-1), 1005);
        for (const QString &expected : { QStringLiteral("4:59"), QStringLiteral("4:58"), QStringLiteral("4:57") }) {
            const int next = *f.session.nextTickInMs();
            f.now += next;
            f.session.pulse();
            QCOMPARE(f.session.remainingText(), expected);
            QVERIFY(f.session.isTicking());
        }
        QCOMPARE(ticks.count(), 4);
        // A tick 300 ms late (295.695 s left) is brought back in step: the next is due
        // 5 ms after 295 s are left.
        f.now += 1300;
        f.session.pulse();
        QCOMPARE(f.session.remainingText(), QStringLiteral("4:56"));
        QCOMPARE(f.session.nextTickInMs().value_or(-1), 695 + 5);
    }

    void aFractionOfASecondTicksAtTheNextWholeSecond()
    {
        Fixture f;
        f.session.start(1.5);
        QCOMPARE(f.session.remainingText(), QStringLiteral("0:02"));
        QCOMPARE(f.session.nextTickInMs().value_or(-1), 505);
        f.now += 505;
        f.session.pulse();
        QCOMPARE(f.session.remainingText(), QStringLiteral("0:01"));
        QCOMPARE(f.session.nextTickInMs().value_or(-1), 1000);
        QSignalSpy ticks(&f.session, &TimerSession::ticked);
        f.now += 1000;
        f.session.pulse();
        // The end is no tick: it finishes, and the session goes quiet.
        QVERIFY(!f.session.isRunning());
        QVERIFY(!f.session.isTicking());
        QVERIFY(!f.session.nextTickInMs());
        QCOMPARE(ticks.count(), 0);
        QCOMPARE(f.bell.rings, 1);
    }

    void theRealTickerChangesTheTextOnEveryTick()
    {
        TimerSession session(nullptr, nullptr);
        QStringList texts;
        connect(&session, &TimerSession::ticked, &session, [&] { texts << session.remainingText(); });
        session.start(2.0);
        QTRY_VERIFY_WITH_TIMEOUT(!session.isRunning(), 6000);
        // Each tick with a new text ("0:02", then "0:01" unless a busy machine held the
        // tick past the end), and the end right after.
        QVERIFY(!texts.isEmpty() && texts.size() <= 2);
        QCOMPARE(texts.first(), QStringLiteral("0:02"));
        if (texts.size() == 2)
            QCOMPARE(texts.last(), QStringLiteral("0:01"));
    }

    void lastPresetIsARecordOfTheLastChoice()
    {
        Fixture f;
        QSignalSpy changed(&f.session, &TimerSession::lastPresetMinutesChanged);
        f.session.setLastPresetMinutes(15);
        f.session.setLastPresetMinutes(15);
        QCOMPARE(f.session.lastPresetMinutes(), 15);
        QCOMPARE(changed.count(), 1);
    }
};

int main(int argc, char *argv[])
{
    // As a helper of the test above: print one clock text, or stop trying.
    if (argc == 3 && qstrcmp(argv[1], "--formatted") == 0) {
        const rlimit noCore { 0, 0 };
        setrlimit(RLIMIT_CORE, &noCore);
        std::puts(qPrintable(TimerMath::formatted(std::strtod(argv[2], nullptr))));
        return 0;
    }
    QCoreApplication app(argc, argv);
    TestTimerSession test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "test_timer_session.moc"
