// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Ledgewise killed without warning, again and again: 200 copies, pins and launcher sites
// made as a user makes them (another application copies; the panels' buttons and the
// address field are used over the accessibility bus), with SIGKILL at random moments,
// right after a change reached the disk or while one is under way. After every kill
// the clipboard history and the preferences must still read back whole, and nothing
// that had reached the disk may be missing when Ledgewise starts again.
//
// A torn file is also looked for between the kills: a watcher reads both files all
// the time, so a save that ever leaves one empty or half written fails the test even
// when no kill happens to land inside it.
//
// LEDGEWISE_CRASH_SEED replays a run (the seed is printed at the start).
#include "app/preferences_codec.h"
#include "modules/clipboard/clipboard_item.h"
#include "tests/support/atspi.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QMutex>
#include <QProcess>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

constexpr int operationCount = 200;
constexpr int historyCapacity = 50;

QString historyPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath(QStringLiteral("Ledgewise/clipboard.json"));
}

// The history as it is on disk; nothing when it is missing or does not decode.
std::optional<QList<ClipboardItem>> historyOnDisk()
{
    QFile file(historyPath());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return decodeHistory(file.readAll());
}

// The preferences record as it is on disk; nothing when it is missing or does not decode.
std::optional<Preferences> preferencesOnDisk()
{
    QSettings settings(settingsPath(), QSettings::NativeFormat);
    const QVariant stored = settings.value(QStringLiteral("ledgewise.preferences"));
    if (stored.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return decodePreferences(stored.toByteArray());
}

QStringList siteTitles(const Preferences &preferences)
{
    QStringList titles;
    for (const LauncherItem &item : preferences.launcherItems)
        titles << item.title;
    return titles;
}

// Reads both files over and over on a thread of its own for as long as it lives and
// remembers the first moment one of them was not whole: missing after it existed,
// empty, or not ending as a finished file does. A save that writes in place shows
// such a moment on every save; one that renames a finished file never does.
class TornFileWatch
{
public:
    TornFileWatch()
        : m_thread([this] { watch(); })
    { }
    ~TornFileWatch()
    {
        m_stop = true;
        m_thread.join();
    }

    QString firstTear() const
    {
        QMutexLocker lock(&m_mutex);
        return m_firstTear;
    }
    qint64 reads() const { return m_reads; }

private:
    struct Watched {
        QByteArray path;
        char first;
        char last;
        bool seen = false;
    };

    void watch()
    {
        Watched files[]
            = { { QFile::encodeName(historyPath()), '[', ']' }, { QFile::encodeName(settingsPath()), '[', '\n' } };
        while (!m_stop) {
            for (Watched &file : files)
                check(file);
            ++m_reads;
            ::usleep(200);
        }
    }

    void check(Watched &file)
    {
        const int fd = ::open(file.path.constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            if (file.seen)
                tear(file, "missing");
            return;
        }
        file.seen = true;
        struct stat status {
        };
        char first = 0;
        char last = 0;
        if (::fstat(fd, &status) != 0 || status.st_size == 0)
            tear(file, "empty");
        else if (::pread(fd, &first, 1, 0) != 1 || ::pread(fd, &last, 1, status.st_size - 1) != 1 || first != file.first
            || last != file.last)
            tear(file, QByteArray("cut short at ") + QByteArray::number(qint64(status.st_size)) + " bytes");
        ::close(fd);
    }

    void tear(const Watched &file, const QByteArray &what)
    {
        QMutexLocker lock(&m_mutex);
        if (m_firstTear.isEmpty())
            m_firstTear = QString::fromUtf8(file.path + ": " + what);
    }

    std::atomic<bool> m_stop = false;
    std::atomic<qint64> m_reads = 0;
    mutable QMutex m_mutex;
    QString m_firstTear;
    std::thread m_thread;
};

enum class Kind { capture, pin, addSite, removeSite };
enum class KillMoment { none, afterAcknowledgement, rightAfterTrigger, afterDelay };

struct Operation {
    Kind kind = Kind::capture;
    QString subject; // the copied text, the entry's text, or the site's title
    bool pinning = false;
};

QString describe(const Operation &operation)
{
    switch (operation.kind) {
    case Kind::capture:
        return QStringLiteral("copy \"%1\"").arg(operation.subject);
    case Kind::pin:
        return QStringLiteral("%1 \"%2\"").arg(operation.pinning ? "pin" : "unpin", operation.subject);
    case Kind::addSite:
        return QStringLiteral("add site %1").arg(operation.subject);
    case Kind::removeSite:
        return QStringLiteral("remove site %1").arg(operation.subject);
    }
    return {};
}

// What reached the disk and was seen there.
struct Acknowledged {
    QList<ClipboardItem> history;
    Preferences preferences;
};

// Why `now` is not what `before` allows once `inFlight` (if any) may or may not have
// happened: an acknowledged entry missing (only a capture may push out the oldest
// unpinned entries, as the history's capacity says), a pin state changed, an entry
// from nowhere. Empty when all is well.
QString historyLoss(
    const QList<ClipboardItem> &before, const QList<ClipboardItem> &now, const std::optional<Operation> &inFlight)
{
    const bool capturing = inFlight && inFlight->kind == Kind::capture;
    // A capture brings the history back to its capacity: as many of the oldest unpinned
    // entries go as it then holds too many (more than one when pinned entries had let
    // it grow past the capacity and were unpinned since).
    QSet<QUuid> mayBePushedOut;
    if (capturing) {
        qsizetype excess = before.size() + 1 - historyCapacity;
        for (qsizetype i = before.size() - 1; i >= 0 && excess > 0; --i) {
            if (!before[i].isPinned) {
                mayBePushedOut.insert(before[i].id);
                --excess;
            }
        }
    }
    for (const ClipboardItem &acknowledged : before) {
        const auto found
            = std::find_if(now.cbegin(), now.cend(), [&](const auto &item) { return item.id == acknowledged.id; });
        if (found == now.cend()) {
            if (mayBePushedOut.contains(acknowledged.id))
                continue;
            return QStringLiteral("lost \"%1\"").arg(acknowledged.text.value_or(QString()).left(40));
        }
        if (found->text != acknowledged.text || found->kind != acknowledged.kind)
            return QStringLiteral("\"%1\" changed its content").arg(acknowledged.text.value_or(QString()).left(40));
        const bool pinInFlight = inFlight && inFlight->kind == Kind::pin && inFlight->subject == acknowledged.text;
        if (found->isPinned != acknowledged.isPinned && !pinInFlight)
            return QStringLiteral("\"%1\" is %2 again")
                .arg(acknowledged.text.value_or(QString()).left(40), acknowledged.isPinned ? "unpinned" : "pinned");
    }
    for (const ClipboardItem &item : now) {
        const bool known
            = std::any_of(before.cbegin(), before.cend(), [&](const auto &old) { return old.id == item.id; });
        if (!known && !(capturing && item.text == inFlight->subject))
            return QStringLiteral("\"%1\" came from nowhere").arg(item.text.value_or(QString()).left(40));
    }
    if (capturing && now.size() > before.size() + 1)
        return QStringLiteral("more than one entry added");
    return {};
}

QString preferencesLoss(const Preferences &before, const Preferences &now, const std::optional<Operation> &inFlight)
{
    const QStringList sitesBefore = siteTitles(before);
    const QStringList sitesNow = siteTitles(now);
    for (const QString &site : sitesBefore) {
        if (!sitesNow.contains(site) && !(inFlight && inFlight->kind == Kind::removeSite && inFlight->subject == site))
            return QStringLiteral("lost the site %1").arg(site);
    }
    for (const QString &site : sitesNow) {
        if (!sitesBefore.contains(site) && !(inFlight && inFlight->kind == Kind::addSite && inFlight->subject == site))
            return QStringLiteral("the site %1 came from nowhere").arg(site);
    }
    Preferences rest = now;
    Preferences restBefore = before;
    rest.launcherItems.clear();
    restBefore.launcherItems.clear();
    if (!(rest == restBefore))
        return QStringLiteral("the preferences other than the launcher changed");
    return {};
}

} // namespace

class TestCrashLoop : public QObject
{
    Q_OBJECT

private slots:
    void nothingAcknowledgedIsLostWhenKilledAtRandomMoments()
    {
        const quint32 seed = qEnvironmentVariableIsSet("LEDGEWISE_CRASH_SEED")
            ? quint32(qEnvironmentVariable("LEDGEWISE_CRASH_SEED").toUInt())
            : QRandomGenerator::global()->generate();
        qInfo("seed %u (LEDGEWISE_CRASH_SEED=%u replays this run)", seed, seed);
        m_random.seed(seed);

        seedTheStores();
        TornFileWatch watch;
        ScreenReader reader;
        m_reader = &reader;
        startApp();
        if (QTest::currentTestFailed())
            return;

        int kills = 0;
        int landed = 0; // operations under way at a kill that were found done after it
        QMap<Kind, int> kinds;
        QMap<KillMoment, int> moments;
        int untilKill = nextKillDistance();
        for (int index = 0; index < operationCount; ++index) {
            const Operation operation = prepare(index);
            if (QTest::currentTestFailed())
                return;
            KillMoment moment = KillMoment::none;
            if (--untilKill == 0) {
                moment = std::array { KillMoment::afterAcknowledgement, KillMoment::rightAfterTrigger,
                    KillMoment::afterDelay }[m_random.bounded(3)];
                untilKill = nextKillDistance();
            }
            trigger(operation);
            if (QTest::currentTestFailed())
                return;
            if (moment == KillMoment::afterDelay)
                QThread::msleep(m_random.bounded(51));
            if (moment == KillMoment::rightAfterTrigger || moment == KillMoment::afterDelay) {
                killAndRestart(
                    operation, QStringLiteral("operation %1 (%2) under way").arg(index).arg(describe(operation)));
                landed += happened(operation) ? 1 : 0;
            } else {
                acknowledge(operation, index);
                if (moment == KillMoment::afterAcknowledgement)
                    killAndRestart(std::nullopt,
                        QStringLiteral("operation %1 (%2) acknowledged").arg(index).arg(describe(operation)));
            }
            if (QTest::currentTestFailed())
                return;
            kills += moment == KillMoment::none ? 0 : 1;
            ++kinds[operation.kind];
            ++moments[moment];
            QVERIFY2(watch.firstTear().isEmpty(),
                qPrintable(QStringLiteral("a file was not whole on disk after operation %1: %2")
                               .arg(index)
                               .arg(watch.firstTear())));
        }
        qInfo("%d operations: %d copies, %d pin changes, %d sites added, %d removed", operationCount,
            kinds[Kind::capture], kinds[Kind::pin], kinds[Kind::addSite], kinds[Kind::removeSite]);
        qInfo("%d kills: %d right after a change was on disk, %d right after a trigger, %d 0-50 ms after one "
              "(%d of these %d changes were found done); both files read %lld times meanwhile",
            kills, moments[KillMoment::afterAcknowledgement], moments[KillMoment::rightAfterTrigger],
            moments[KillMoment::afterDelay], landed,
            moments[KillMoment::rightAfterTrigger] + moments[KillMoment::afterDelay], qint64(watch.reads()));

        // A last, ordinary end keeps everything too.
        m_app->terminate();
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitCode(), 0);
        checkAfterKill(std::nullopt, QStringLiteral("the ordinary end"));
        QVERIFY2(watch.firstTear().isEmpty(), qPrintable(watch.firstTear()));
    }

    void cleanup()
    {
        if (m_app && m_app->state() != QProcess::NotRunning) {
            m_app->kill();
            m_app->waitForFinished();
        }
        m_app.reset();
        m_reader = nullptr;
    }

private:
    // A kill every 5 to 12 operations: 17 to 40 over the 200, about 24.
    int nextKillDistance() { return 5 + int(m_random.bounded(8)); }

    // Whether an operation's effect is what the files say now.
    bool happened(const Operation &operation) const
    {
        if (operation.kind == Kind::capture || operation.kind == Kind::pin) {
            return std::any_of(m_acknowledged.history.cbegin(), m_acknowledged.history.cend(), [&](const auto &item) {
                return item.text == operation.subject
                    && (operation.kind == Kind::capture || item.isPinned == operation.pinning);
            });
        }
        return siteTitles(m_acknowledged.preferences).contains(operation.subject) == (operation.kind == Kind::addSite);
    }

    // Sixteen large pinned entries from an earlier session make every save of the
    // history a sizeable write (a kill lands inside one more often); the preferences
    // give square surfaces that open without animation.
    void seedTheStores()
    {
        QList<ClipboardItem> history;
        for (int i = 0; i < 16; ++i) {
            ClipboardItem item;
            item.id = QUuid::createUuid();
            item.createdAt = nowSinceReferenceDate() - 3600 - i;
            item.text = QStringLiteral("kept from before %1 ").arg(i) + QString(64 * 1024, QChar(u'a' + i));
            item.isPinned = true;
            history << item;
        }
        QDir().mkpath(QFileInfo(historyPath()).path());
        QSaveFile file(historyPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(encodeHistory(history));
        QVERIFY(file.commit());

        Preferences preferences;
        preferences.style = NotchStyle::classic;
        preferences.animateInterface = false;
        storePreferences(preferences);
        m_acknowledged = { history, preferences };
    }

    void startApp()
    {
        m_app = std::make_unique<QProcess>();
        m_app->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QVERIFY2(startLedgewise(*m_app), qPrintable(m_app->errorString()));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 15000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 15000);
        m_openSide.clear();
    }

    // Picks the next operation and gets the panel it needs open, so that what follows
    // is only the user's one action.
    Operation prepare(int index)
    {
        const int roll = int(m_random.bounded(100));
        QStringList recent; // the newest entries copied in this run, shown at the top of the panel
        for (const ClipboardItem &item :
            std::as_const(m_acknowledged.history).first(std::min<qsizetype>(3, m_acknowledged.history.size()))) {
            if (item.text && item.text->startsWith(QLatin1String("copy ")))
                recent << *item.text;
        }
        const QStringList sites = siteTitles(m_acknowledged.preferences);
        Operation operation;
        if (roll < 25 && !recent.isEmpty()) {
            operation.kind = Kind::pin;
            operation.subject = recent[m_random.bounded(int(recent.size()))];
            const auto entry = std::find_if(m_acknowledged.history.cbegin(), m_acknowledged.history.cend(),
                [&](const auto &item) { return item.text == operation.subject; });
            operation.pinning = !entry->isPinned;
            openSurface(QStringLiteral("left"));
        } else if (roll < 40) {
            // A few sites at a time, so the address field stays on the surface.
            operation.kind = sites.size() < 4 ? Kind::addSite : Kind::removeSite;
            operation.subject = operation.kind == Kind::addSite ? QStringLiteral("site%1.example").arg(index)
                                                                : sites[m_random.bounded(int(sites.size()))];
            openSurface(QStringLiteral("right"));
            if (operation.kind == Kind::addSite)
                typeAddress(operation.subject);
        } else {
            operation.kind = Kind::capture;
            operation.subject
                = QStringLiteral("copy %1 %2").arg(index).arg(m_random.generate(), 8, 16, QLatin1Char('0'));
        }
        return operation;
    }

    void trigger(const Operation &operation)
    {
        switch (operation.kind) {
        case Kind::capture:
            QVERIFY(copyElsewhere(operation.subject.toUtf8()));
            return;
        case Kind::pin:
            press(QStringLiteral("%1 %2").arg(operation.pinning ? "Pin" : "Unpin", operation.subject));
            return;
        case Kind::addSite:
            press(QStringLiteral("Add site"));
            return;
        case Kind::removeSite:
            press(QStringLiteral("Remove %1").arg(operation.subject));
            return;
        }
    }

    void press(const QString &name)
    {
        const QString answer = m_reader->ask(QStringLiteral("press"), QStringLiteral("push button"), name);
        QVERIFY2(answer == QLatin1String("pressed"), qPrintable(name + QStringLiteral(": ") + answer));
    }

    // Waits for the operation's effect on disk and takes what is there as acknowledged,
    // after checking that nothing acknowledged before went missing on the way.
    void acknowledge(const Operation &operation, int index)
    {
        const auto done = [&]() -> bool {
            if (operation.kind == Kind::capture || operation.kind == Kind::pin) {
                const auto history = historyOnDisk();
                if (!history)
                    return false;
                const auto entry = std::find_if(history->cbegin(), history->cend(),
                    [&](const auto &item) { return item.text == operation.subject; });
                if (entry == history->cend() || (operation.kind == Kind::pin && entry->isPinned != operation.pinning))
                    return false;
                m_seenHistory = *history;
                return true;
            }
            const auto preferences = preferencesOnDisk();
            if (!preferences
                || siteTitles(*preferences).contains(operation.subject) != (operation.kind == Kind::addSite))
                return false;
            m_seenPreferences = *preferences;
            return true;
        };
        QTRY_VERIFY2_WITH_TIMEOUT(done(),
            qPrintable(QStringLiteral("operation %1 (%2) never reached the disk").arg(index).arg(describe(operation))),
            10000);
        if (operation.kind == Kind::capture || operation.kind == Kind::pin) {
            const QString loss = historyLoss(m_acknowledged.history, m_seenHistory, operation);
            QVERIFY2(loss.isEmpty(),
                qPrintable(QStringLiteral("after operation %1 (%2): %3").arg(index).arg(describe(operation), loss)));
            m_acknowledged.history = m_seenHistory;
        } else {
            const QString loss = preferencesLoss(m_acknowledged.preferences, m_seenPreferences, operation);
            QVERIFY2(loss.isEmpty(),
                qPrintable(QStringLiteral("after operation %1 (%2): %3").arg(index).arg(describe(operation), loss)));
            m_acknowledged.preferences = m_seenPreferences;
        }
    }

    void killAndRestart(const std::optional<Operation> &inFlight, const QString &when)
    {
        ::kill(pid_t(m_app->processId()), SIGKILL);
        QVERIFY(m_app->waitForFinished(10000));
        QCOMPARE(m_app->exitStatus(), QProcess::CrashExit);
        checkAfterKill(inFlight, QStringLiteral("killed with ") + when);
        if (QTest::currentTestFailed())
            return;
        startApp();
        if (QTest::currentTestFailed())
            return;
        // What the new start found is what it shows and keeps: checked again now that
        // it has loaded (and may have tidied) both files.
        checkAfterKill(inFlight, QStringLiteral("restarted after being killed with ") + when);
    }

    // Both files decode, and everything acknowledged is there; what was under way may
    // or may not have happened, and what is found becomes the acknowledged state.
    void checkAfterKill(const std::optional<Operation> &inFlight, const QString &when)
    {
        const auto history = historyOnDisk();
        QVERIFY2(history, qPrintable(QStringLiteral("the history does not decode, %1").arg(when)));
        const auto preferences = preferencesOnDisk();
        QVERIFY2(preferences, qPrintable(QStringLiteral("the preferences do not decode, %1").arg(when)));
        const QString historyLost = historyLoss(m_acknowledged.history, *history, inFlight);
        QVERIFY2(historyLost.isEmpty(), qPrintable(QStringLiteral("history %1: %2").arg(when, historyLost)));
        const QString preferencesLost = preferencesLoss(m_acknowledged.preferences, *preferences, inFlight);
        QVERIFY2(
            preferencesLost.isEmpty(), qPrintable(QStringLiteral("preferences %1: %2").arg(when, preferencesLost)));
        m_acknowledged = { *history, *preferences };
    }

    // Opens a side's surface with a click on it (a click there also closes the other).
    void openSurface(const QString &side)
    {
        if (m_openSide == side)
            return;
        for (int attempt = 0; attempt < 3 && windowGeometry(side).width() != openWidth; ++attempt) {
            const QRect surface = windowGeometry(side);
            xdotool({ QStringLiteral("mousemove"), QString::number(surface.center().x()),
                QString::number(surface.top() + 14), QStringLiteral("click"), QStringLiteral("1") });
            (void)QTest::qWaitFor([&] { return windowGeometry(side).width() == openWidth; }, 2000);
        }
        QCOMPARE(windowGeometry(side).width(), openWidth);
        m_openSide = side;
    }

    // Clicks the launcher's address field and types `address` into it.
    void typeAddress(const QString &address)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            const QStringList centre
                = m_reader->ask(QStringLiteral("centre"), QStringLiteral("text"), QStringLiteral("Address"))
                      .split(QLatin1Char(' '));
            QCOMPARE(centre.size(), 2);
            xdotool(
                { QStringLiteral("mousemove"), centre[0], centre[1], QStringLiteral("click"), QStringLiteral("1") });
            xdotool({ QStringLiteral("key"), QStringLiteral("ctrl+a"), QStringLiteral("BackSpace") });
            xdotool({ QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("2"), address });
            if (QTest::qWaitFor(
                    [&] {
                        return m_reader->ask(QStringLiteral("text"), QStringLiteral("text"), QStringLiteral("Address"))
                            == address;
                    },
                    2000))
                return;
        }
        QFAIL(qPrintable(QStringLiteral("could not type %1 into the address field").arg(address)));
    }

    static QRect windowGeometry(const QString &side)
    {
        const QString window = surfaceWindow(side);
        if (window.isEmpty())
            return {};
        QRect rect;
        for (const QString &line : xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window })
                                       .split(QLatin1Char('\n'))) {
            const int value = line.section(QLatin1Char('='), 1).toInt();
            if (line.startsWith(QLatin1String("X=")))
                rect.moveLeft(value);
            else if (line.startsWith(QLatin1String("Y=")))
                rect.moveTop(value);
            else if (line.startsWith(QLatin1String("WIDTH=")))
                rect.setWidth(value);
            else if (line.startsWith(QLatin1String("HEIGHT=")))
                rect.setHeight(value);
        }
        return rect;
    }

    static constexpr int openWidth = 268;

    QRandomGenerator m_random;
    std::unique_ptr<QProcess> m_app;
    ScreenReader *m_reader = nullptr;
    QString m_openSide;
    Acknowledged m_acknowledged;
    QList<ClipboardItem> m_seenHistory;
    Preferences m_seenPreferences;
};

QTEST_GUILESS_MAIN(TestCrashLoop)
#include "test_crash_loop.moc"
