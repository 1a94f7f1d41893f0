// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The two toggle shortcuts of the running program, pressed with xdotool on the test's
// own X server, with another X client holding or taking key combinations.

#include "app/preferences.h"
#include "shortcuts/shortcut.h"
#include "surfaces/notch_layout.h"
#include "tests/support/ledgewise_process.h"

#include <QProcess>
#include <QTest>

#include <memory>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

const QString left = QStringLiteral("left");
const QString right = QStringLiteral("right");

// The test's virtual screen: 1512 × 982, no notch, no top panel.
QRect expectedFrame(NotchSide side, NotchPresentation presentation)
{
    const Rect screen { 0, 0, 1512, 982 };
    const DisplaySnapshot display { screen, screen, {}, {}, 0, 0 };
    return toWindowRect(NotchLayout::frame(side, presentation, Preferences {}, display), 982);
}

const QRect leftOpen = expectedFrame(NotchSide::left, NotchPresentation::expanded);
const QRect leftClosed = expectedFrame(NotchSide::left, NotchPresentation::sleeping);
const QRect rightOpen = expectedFrame(NotchSide::right, NotchPresentation::expanded);
const QRect rightClosed = expectedFrame(NotchSide::right, NotchPresentation::sleeping);

void press(const QString &keys)
{
    xdotool({ QStringLiteral("key"), keys });
}

void storeShortcut(const QString &name, const QByteArray &json)
{
    QSettings settings(settingsPath(), QSettings::NativeFormat);
    settings.setValue(QStringLiteral("GlobalShortcuts_") + name, QString::fromUtf8(json));
}

// Another X client that holds a combination (keysym, X modifier mask) for itself.
struct OtherClient {
    QProcess process;

    ~OtherClient()
    {
        process.kill();
        process.waitForFinished();
    }

    // Whether it has received a press of its combination since last asked.
    bool pressed()
    {
        process.waitForReadyRead(10);
        heard += process.readAll();
        return heard.contains("pressed");
    }
    QByteArray heard;
};

// The other client once it holds the combination; none when the X server said no.
std::unique_ptr<OtherClient> otherClientGrabs(int keysym, int modifiers)
{
    auto other = std::make_unique<OtherClient>();
    other->process.start(qEnvironmentVariable("KEY_GRABBER"), { QString::number(keysym), QString::number(modifiers) });
    if (!other->process.waitForReadyRead(5000) || other->process.readLine() != "grabbed\n")
        return nullptr;
    return other;
}

// Whether another client holds the whole keyboard, as an open menu does.
bool keyboardHeldElsewhere()
{
    QProcess grabber;
    grabber.start(qEnvironmentVariable("KEY_GRABBER"), { QStringLiteral("--keyboard") });
    grabber.waitForFinished(5000);
    return grabber.readAllStandardOutput() == "refused\n";
}

// The keyboard layout group in use: 0 for the first layout, 1 for the second...
int layoutGroup()
{
    QProcess grabber;
    grabber.start(qEnvironmentVariable("KEY_GRABBER"), { QStringLiteral("--group") });
    grabber.waitForFinished(5000);
    return grabber.exitCode() == 0 ? grabber.readAllStandardOutput().trimmed().toInt() : -1;
}

constexpr int space = 0x20;
constexpr int mod1 = 8; // Alt on the X server's own keymap

// Whether a lock light ("Num Lock", "Caps Lock") is on, as xset reports it.
bool lockOn(const QByteArray &lock)
{
    QProcess xset;
    xset.start(QStringLiteral("xset"), { QStringLiteral("q") });
    xset.waitForFinished();
    return xset.readAllStandardOutput().simplified().contains(lock + ": on");
}

bool numLockOn()
{
    return lockOn("Num Lock");
}

} // namespace

class TestGlobalShortcuts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(QFile::exists(qEnvironmentVariable("LEDGEWISE_EXECUTABLE")), "LEDGEWISE_EXECUTABLE");
        QVERIFY2(QFile::exists(qEnvironmentVariable("KEY_GRABBER")), "KEY_GRABBER");
        // The pointer away from both surfaces, so that no hover widens them.
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("756"), QStringLiteral("600") });
    }

    void cleanup()
    {
        if (m_app) {
            m_app->kill();
            m_app->waitForFinished();
            m_app.reset();
        }
        QFile::remove(settingsPath());
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("756"), QStringLiteral("600") });
        // Nothing held down or locked for the next case, even after a failed one.
        xdotool(
            { QStringLiteral("keyup"), QStringLiteral("alt+space"), QStringLiteral("shift"), QStringLiteral("ctrl") });
        if (numLockOn())
            press(QStringLiteral("Num_Lock"));
        if (lockOn("Caps Lock"))
            press(QStringLiteral("Caps_Lock"));
        if (std::exchange(m_keymapChanged, false))
            QProcess::execute(QStringLiteral("setxkbmap"), { QStringLiteral("-layout"), QStringLiteral("us") });
    }

    void altSpaceOpensAndClosesTheLeftSurfaceAndShiftAltSpaceTheRight()
    {
        start();
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        QCOMPARE(surfaceGeometry(right), rightClosed);
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftClosed);

        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
        QCOMPARE(surfaceGeometry(left), leftClosed);
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightClosed);
        QVERIFY2(m_errors.isEmpty(), m_errors.constData());
    }

    void theTogglesWorkWithNumLockOn()
    {
        start();
        press(QStringLiteral("Num_Lock"));
        QTRY_VERIFY(numLockOn());
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
    }

    void theTogglesWorkWithCapsLockAndNumLockOn()
    {
        start();
        press(QStringLiteral("Caps_Lock"));
        press(QStringLiteral("Num_Lock"));
        QTRY_VERIFY(lockOn("Caps Lock") && numLockOn());
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftClosed);
    }

    void holdingTheKeysForASecondTogglesOnce()
    {
        start();
        xdotool({ QStringLiteral("keydown"), QStringLiteral("alt+space") });
        // Held past the keyboard's repeat delay: the repeated presses must not bring a
        // release each, or the surface would open and close while the keys are down.
        QElapsedTimer held;
        held.start();
        while (held.elapsed() < 1000) {
            QCOMPARE(surfaceGeometry(left), leftClosed);
            QTest::qWait(50);
        }
        xdotool({ QStringLiteral("keyup"), QStringLiteral("alt+space") });
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        QTest::qWait(300);
        QCOMPARE(surfaceGeometry(left), leftOpen);
    }

    void aShortcutChangedInTheSettingsFileIsTakenAtOnceAndTheOldOneGivenBack()
    {
        start();
        // Control+Option+Space.
        storeShortcut(QStringLiteral("toggleLeft"), R"({"carbonKeyCode":49,"carbonModifiers":6144})");
        // Alt+Space is free again: another client can have it.
        std::unique_ptr<OtherClient> other;
        QTRY_VERIFY((other = otherClientGrabs(space, mod1)) != nullptr);
        press(QStringLiteral("alt+space"));
        QTRY_VERIFY(other->pressed());
        QCOMPARE(surfaceGeometry(left), leftClosed);
        press(QStringLiteral("ctrl+alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        QVERIFY2(m_errors.isEmpty(), m_errors.constData());
    }

    void aCombinationAnotherClientHoldsIsReportedAndTheOtherToggleStillWorks()
    {
        const auto other = otherClientGrabs(space, mod1);
        QVERIFY(other);
        start();
        QTRY_VERIFY(m_errors.contains('\n'));
        QCOMPARE(m_errors,
            QByteArray("Error registering hotkey ⌥Space: BadAccess (attempt to access private "
                       "resource denied)\n"));
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
        QCOMPARE(m_app->state(), QProcess::Running);
        // The press was the other client's.
        press(QStringLiteral("alt+space"));
        QTRY_VERIFY(other->pressed());
        QCOMPARE(surfaceGeometry(left), leftClosed);
    }

    void unusableStoredShortcutsAreReportedOnceEachAndNotTaken()
    {
        // A key code no key of this layout has, and a mask with a bit no modifier has.
        storeShortcut(QStringLiteral("toggleLeft"), R"({"carbonKeyCode":66,"carbonModifiers":2048})");
        storeShortcut(QStringLiteral("toggleRight"), R"({"carbonKeyCode":49,"carbonModifiers":2049})");
        start();
        QTRY_COMPARE(m_errors.count('\n'), 2);
        QCOMPARE(m_errors,
            QByteArray("Error registering hotkey ⌥: no key for code 66 in the current keyboard layout\n"
                       "Error registering hotkey ⌥Space: unknown modifier bits 0x1\n"));
        // One that does not decode at all, written while it runs.
        storeShortcut(QStringLiteral("toggleRight"), "{\"carbonKeyCode\":");
        QTRY_COMPARE(m_errors.count('\n'), 3);
        QVERIFY(m_errors.endsWith("Error registering hotkey toggleRight: its stored value cannot be read\n"));
        QCOMPARE(m_app->state(), QProcess::Running);
        // Nothing of ours holds Alt+Space.
        QVERIFY(otherClientGrabs(space, mod1));
    }

    void theTogglesWorkWhileTheSurfacesMenuIsOpen()
    {
        start();
        const auto menuShows = [] {
            return !xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                                QStringLiteral("^Ledgewise menu$") })
                        .isEmpty();
        };
        xdotool({ QStringLiteral("mousemove"), QString::number(leftClosed.center().x()),
            QString::number(leftClosed.center().y()), QStringLiteral("click"), QStringLiteral("3") });
        QTRY_VERIFY(menuShows());
        QTRY_VERIFY(keyboardHeldElsewhere());
        // The first entry highlighted: Space alone would press it and close the menu.
        press(QStringLiteral("Down"));
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
        QVERIFY(menuShows());
        // Closed, the menu no longer holds the keyboard: the keys are grabbed again.
        press(QStringLiteral("Escape"));
        QTRY_VERIFY(!menuShows());
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightClosed);
        QVERIFY2(m_errors.isEmpty(), m_errors.constData());
    }

    void theTogglesSurviveAKeyboardLayoutSwitch()
    {
        start();
        setKeymap({ QStringLiteral("-layout"), QStringLiteral("de") });
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        setKeymap({ QStringLiteral("-layout"), QStringLiteral("us") });
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftClosed);
        QVERIFY2(m_errors.isEmpty(), m_errors.constData());
    }

    void theTogglesWorkInTheSecondLayoutOfTwo()
    {
        start();
        // US and Russian, switched to Russian as a layout switcher does.
        setKeymap({ QStringLiteral("-layout"), QStringLiteral("us,ru") });
        QCOMPARE(QProcess::execute(
                     qEnvironmentVariable("KEY_GRABBER"), { QStringLiteral("--lock-group"), QStringLiteral("1") }),
            0);
        QTRY_COMPARE(layoutGroup(), 1);
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
        QVERIFY2(m_errors.isEmpty(), m_errors.constData());
    }

    void aNewModifierMapIsFollowed()
    {
        start();
        // Num Lock moves to another modifier while Ledgewise runs, then is turned on:
        // the grabs must now allow for that modifier instead.
        m_keymapChanged = true;
        QCOMPARE(QProcess::execute(QStringLiteral("xmodmap"),
                     { QStringLiteral("-e"), QStringLiteral("clear mod2"), QStringLiteral("-e"),
                         QStringLiteral("add mod3 = Num_Lock") }),
            0);
        press(QStringLiteral("Num_Lock"));
        QTRY_VERIFY(numLockOn());
        press(QStringLiteral("alt+space"));
        QTRY_COMPARE(surfaceGeometry(left), leftOpen);
        press(QStringLiteral("shift+alt+space"));
        QTRY_COMPARE(surfaceGeometry(right), rightOpen);
    }

private:
    void setKeymap(const QStringList &arguments)
    {
        m_keymapChanged = true;
        QCOMPARE(QProcess::execute(QStringLiteral("setxkbmap"), arguments), 0);
    }

    void start()
    {
        m_app = std::make_unique<QProcess>();
        m_errors.clear();
        connect(m_app.get(), &QProcess::readyReadStandardError, this,
            [this] { m_errors += m_app->readAllStandardError(); });
        QVERIFY(startLedgewise(*m_app));
        // The surfaces come after the shortcuts are taken.
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(left).isEmpty() && !surfaceWindow(right).isEmpty(), 15000);
        QTRY_COMPARE(surfaceGeometry(left), leftClosed);
    }

    std::unique_ptr<QProcess> m_app;
    QByteArray m_errors;
    // The X server's keymap was changed: the next case gets the usual one back.
    bool m_keymapChanged = false;
};

QTEST_GUILESS_MAIN(TestGlobalShortcuts)
#include "test_global_shortcuts.moc"
