// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Resident memory of the whole program over a long session of use (run it on Xvfb:
// tests/support/isolated.sh --display ...). For LEDGEWISE_SOAK_SECONDS (600 by default)
// it goes round and round: another application copies a text and then a picture, a
// text is dragged onto the left surface and its Copy or Save is clicked, and each
// surface is opened and closed with the mouse. The program's VmRSS is read every few
// seconds; the figures are the first reading after one full round (so the panels
// made on first use are counted from the start), the last one, the highest and the
// growth. Nothing is asserted: the target is a growth under 5 MB.
//   soak_ledgewise [LEDGEWISE-BINARY]
#include "app/preferences_codec.h"
#include "bench/support/bench_support.h"

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>

#include <memory>

using namespace ledgewise;
using bench::surfaceWidth;
using bench::xdotool;

namespace {

// Where the classic surfaces of the 1512-wide virtual screen rest and open.
constexpr int leftSurfaceX = 80;
constexpr int rightSurfaceCentreX = 1348 + 42;
constexpr int openWidth = 268;
const QPoint elsewhere(756, 600);
// The drop's Copy and Save buttons inside the opened left surface.
const QPoint dropCopy(leftSurfaceX + 40, 58);
const QPoint dropSave(leftSurfaceX + 103, 58);

void pointerTo(QPoint point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) });
}

void clickAt(QPoint point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()),
        QStringLiteral("click"), QStringLiteral("1") });
}

// Waits up to `seconds` for the surface to be shown open (or closed).
bool waitForSurface(const QString &side, bool open, int seconds = 3)
{
    for (int i = 0; i < seconds * 20; ++i) {
        const int width = surfaceWidth(side);
        if (width > 0 && (width == openWidth) == open)
            return true;
        QThread::msleep(50);
    }
    return false;
}

void writePreferences()
{
    // Classic corners and no animation: the surfaces open at once, at known places.
    Preferences preferences;
    preferences.style = NotchStyle::classic;
    preferences.animateInterface = false;
    QSettings settings(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
                           .filePath(QStringLiteral("Ledgewise/Ledgewise.conf")),
        QSettings::NativeFormat);
    settings.setValue(QStringLiteral("ledgewise.preferences"), *encodePreferences(preferences));
}

// Another application that owns the clipboard until the next one takes it over.
class Copier
{
public:
    bool copy(const QStringList &offers)
    {
        auto next = std::make_unique<QProcess>();
        next->start(QStringLiteral(LEDGEWISE_CLIPBOARD_OFFER), offers);
        const bool ready = next->waitForReadyRead(10000) && next->readLine().trimmed() == "ready";
        // The previous owner quits on its own once it has lost the clipboard.
        if (m_current && !m_current->waitForFinished(2000))
            m_current->kill();
        if (m_current)
            m_current->waitForFinished(2000);
        m_current = std::move(next);
        return ready;
    }

    ~Copier()
    {
        if (m_current) {
            m_current->kill();
            m_current->waitForFinished(2000);
        }
    }

private:
    std::unique_ptr<QProcess> m_current;
};

// A picture that differs from round to round, as screenshots do.
QString writePicture(const QString &folder, int roundNumber)
{
    QImage picture(480, 320, QImage::Format_RGB32);
    QRandomGenerator random { quint32(roundNumber) };
    picture.fill(QColor::fromRgb(random.generate()));
    QPainter painter(&picture);
    for (int i = 0; i < 40; ++i)
        painter.fillRect(
            int(random.bounded(480)), int(random.bounded(320)), 40, 30, QColor::fromRgb(random.generate()));
    painter.end();
    const QString path = QDir(folder).filePath(QStringLiteral("picture.png"));
    picture.save(path);
    return path;
}

// Another application drags `text` onto the left surface and lets go over it; true when
// the drag ends as a copy.
bool dropText(const QString &text)
{
    QProcess source;
    source.start(QStringLiteral(LEDGEWISE_DRAG_SOURCE), { QStringLiteral("600"), QStringLiteral("500"), text });
    if (!source.waitForReadyRead(10000) || source.readLine().trimmed() != "ready")
        return false;
    for (int i = 0; i < 40
         && xdotool({ QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("drag source") }).isEmpty();
         ++i)
        QThread::msleep(50);
    pointerTo(QPoint(650, 550));
    xdotool({ QStringLiteral("mousedown"), QStringLiteral("1") });
    for (const QPoint step :
        { QPoint(600, 400), QPoint(300, 100), QPoint(122, 15), QPoint(123, 16), QPoint(140, 80) }) {
        pointerTo(step);
        QThread::msleep(150);
    }
    xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
    // The surface reads the text after the button is released: the source lives until
    // it says how the drag ended.
    const bool copied = source.waitForReadyRead(10000) && source.readLine().trimmed() == "copy";
    source.kill();
    source.waitForFinished(2000);
    return copied;
}

struct Counts {
    int rounds = 0;
    int copies = 0;
    int drops = 0;
    int saves = 0;
    int openings = 0;
    int misses = 0;
};

void oneRound(int round, const QString &scratch, Copier &copier, Counts &counts)
{
    // A step that did not take is counted and, the first few times, said.
    const auto tally = [&counts, round](bool done, int &count, const char *step) {
        if (done) {
            ++count;
            return;
        }
        if (++counts.misses <= 10)
            std::fprintf(stderr, "soak: round %d: %s did not take\n", round, step);
    };

    // A text (now and then a long one) and a picture, copied elsewhere.
    const QString text
        = QStringLiteral("soak round %1 ").arg(round) + QString(round % 5 == 0 ? 20000 : 40, QLatin1Char('x'));
    tally(copier.copy({ QStringLiteral("text/plain;charset=utf-8=") + text }), counts.copies, "copying a text");
    QThread::msleep(200);
    tally(copier.copy({ QStringLiteral("image/png<") + writePicture(scratch, round) }), counts.copies,
        "copying a picture");
    QThread::msleep(200);

    // A drop, then Copy or Save; what Save writes is cleared away again, as a user
    // tidies Downloads.
    const bool dropped = dropText(QStringLiteral("dropped in round %1").arg(round));
    tally(dropped, counts.drops, "the drop");
    if (dropped) {
        const bool save = round % 2 == 1;
        QThread::msleep(200);
        clickAt(save ? dropSave : dropCopy);
        if (save) {
            const QDir downloads(QDir::home().filePath(QStringLiteral("Downloads")));
            bool saved = false;
            for (int i = 0; i < 100 && !saved; ++i) {
                saved = !downloads.entryList(QDir::Files).isEmpty();
                if (!saved)
                    QThread::msleep(50);
            }
            tally(saved, counts.saves, "Save");
            QThread::msleep(300);
            for (const QString &file : downloads.entryList(QDir::Files))
                QFile::remove(downloads.filePath(file));
        }
    }
    clickAt(elsewhere);
    waitForSurface(QStringLiteral("left"), false);

    // Each surface opened and closed with the mouse.
    for (const auto &[side, point] : { std::pair { QStringLiteral("left"), QPoint(leftSurfaceX + 42, 15) },
             std::pair { QStringLiteral("right"), QPoint(rightSurfaceCentreX, 15) } }) {
        clickAt(point);
        tally(waitForSurface(side, true), counts.openings, "opening a surface");
        QThread::msleep(300);
        clickAt(elsewhere);
        waitForSurface(side, false);
    }
    ++counts.rounds;
}

QString megabytes(long long kilobytes)
{
    return QStringLiteral("%1 MB").arg(kilobytes / 1024.0, 0, 'f', 1);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString program = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(LEDGEWISE_BINARY);
    const int seconds = qEnvironmentVariableIntValue("LEDGEWISE_SOAK_SECONDS") > 0
        ? qEnvironmentVariableIntValue("LEDGEWISE_SOAK_SECONDS")
        : 600;
    const QString scratch
        = QDir::temp().filePath(QStringLiteral("ledgewise-soak-%1").arg(QCoreApplication::applicationPid()));
    QDir().mkpath(scratch);
    QDir().mkpath(QDir::home().filePath(QStringLiteral("Downloads")));
    writePreferences();

    QProcess ledgewise;
    // Its messages would drown the figures: they go to a file, shown if it ends early.
    const QString log = QDir(scratch).filePath(QStringLiteral("ledgewise.log"));
    ledgewise.setProcessChannelMode(QProcess::MergedChannels);
    ledgewise.setStandardOutputFile(log);
    ledgewise.start(program, {});
    if (!ledgewise.waitForStarted(10000) || !waitForSurface(QStringLiteral("right"), false, 20)) {
        std::printf("could not start %s\n", qPrintable(program));
        return 1;
    }
    const qint64 pid = ledgewise.processId();
    bench::print("soak: resident memory after start", megabytes(bench::residentKilobytes(pid)));

    Copier copier;
    Counts counts;
    oneRound(0, scratch, copier, counts);
    const long long start = bench::residentKilobytes(pid);
    long long highest = start;
    long long last = start;
    QElapsedTimer clock;
    clock.start();
    qint64 nextSample = 5000;
    qint64 nextReport = 60000;
    // Nothing here runs an event loop: waitForFinished(0) is what notices an end.
    const auto running
        = [&ledgewise] { return !ledgewise.waitForFinished(0) && ledgewise.state() == QProcess::Running; };
    while (clock.elapsed() < seconds * 1000LL && running()) {
        oneRound(counts.rounds, scratch, copier, counts);
        if (clock.elapsed() >= nextSample) {
            last = bench::residentKilobytes(pid);
            highest = std::max(highest, last);
            nextSample = clock.elapsed() + 5000;
        }
        if (clock.elapsed() >= nextReport) {
            bench::print("soak: resident memory at",
                QStringLiteral("%1 s: %2").arg(clock.elapsed() / 1000).arg(megabytes(last)));
            nextReport += 60000;
        }
    }
    if (!running()) {
        bench::print("soak: Ledgewise ended during the soak",
            QStringLiteral("after %1 s and %2 rounds, %3 %4; its messages: %5")
                .arg(clock.elapsed() / 1000)
                .arg(counts.rounds)
                .arg(ledgewise.exitStatus() == QProcess::CrashExit ? "crashed, signal" : "exit code")
                .arg(ledgewise.exitCode())
                .arg(log));
        return 1;
    }
    last = bench::residentKilobytes(pid);
    highest = std::max(highest, last);

    bench::print("soak: duration", QStringLiteral("%1 s, %2 rounds").arg(clock.elapsed() / 1000).arg(counts.rounds));
    bench::print("soak: done",
        QStringLiteral("%1 copies, %2 drops, %3 saves, %4 openings, %5 steps missed")
            .arg(counts.copies)
            .arg(counts.drops)
            .arg(counts.saves)
            .arg(counts.openings)
            .arg(counts.misses));
    QFile history(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                      .filePath(QStringLiteral("Ledgewise/clipboard.json")));
    const QByteArray entries = history.open(QIODevice::ReadOnly) ? history.readAll() : QByteArray();
    bench::print("soak: clipboard history at end",
        QStringLiteral("%1 entries, %2 kB").arg(entries.count("\"id\"")).arg(entries.size() / 1024));
    bench::print("soak: resident memory at start (after one round)", megabytes(start));
    bench::print("soak: resident memory at end", megabytes(last));
    bench::print("soak: resident memory, highest", megabytes(highest));
    bench::print("soak: growth, end - start (target under 5 MB)",
        QStringLiteral("%1 MB").arg((last - start) / 1024.0, 0, 'f', 1));

    ledgewise.terminate();
    ledgewise.waitForFinished(10000);
    QDir(scratch).removeRecursively();
    return 0;
}
