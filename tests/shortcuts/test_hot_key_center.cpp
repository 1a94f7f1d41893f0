// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/hot_key_center.h"
#include "shortcuts/keyboard_layout.h"
#include "tests/support/fake_key_value_store.h"

#include <QTest>

using namespace ledgewise;
using namespace ledgewise::GlobalShortcuts;

namespace {

// The window system as the centre sees it: it records every grab and release, and
// refuses the shortcuts another client holds.
class FakeGrabber final : public HotKeyGrabber
{
public:
    std::optional<QString> grab(const Shortcut &shortcut, HotKeyID id) override
    {
        if (heldElsewhere.contains(shortcut)) {
            log << QStringLiteral("refuse %1").arg(id.id);
            return QStringLiteral("BadAccess (attempt to access private resource denied)");
        }
        log << QStringLiteral("grab %1 %2").arg(id.id).arg(shortcut.carbonModifiers);
        grabbed.insert(id.id, shortcut);
        signatures.insert(id.id, id.signature);
        return std::nullopt;
    }
    void ungrab(HotKeyID id) override
    {
        log << QStringLiteral("ungrab %1").arg(id.id);
        grabbed.remove(id.id);
    }

    // The user presses or releases a shortcut: the event of its grab, if there is one.
    bool press(const Shortcut &shortcut, EventType type = EventType::keyDown)
    {
        for (auto it = grabbed.cbegin(); it != grabbed.cend(); ++it) {
            if (it.value() == shortcut)
                return delivered && delivered({ signatures.value(it.key()), it.key() }, type);
        }
        return false;
    }
    bool tap(const Shortcut &shortcut)
    {
        const bool down = press(shortcut, EventType::keyDown);
        return press(shortcut, EventType::keyUp) && down;
    }

    QList<Shortcut> heldElsewhere;
    QMap<int, Shortcut> grabbed;
    QMap<int, quint32> signatures;
    QStringList log;
};

const Shortcut optionSpace(Key::space, optionFlag);
const Shortcut shiftOptionSpace(Key::space, shiftFlag | optionFlag);
const Shortcut commandShiftL(Key::l, commandFlag | shiftFlag);
const Name left { QStringLiteral("toggleLeft"), optionSpace };
const Name right { QStringLiteral("toggleRight"), shiftOptionSpace };
const Name noDefault { QStringLiteral("clipboardHistory"), std::nullopt };

// A store, a grabber and a centre over them, with the lines the centre prints.
struct Fixture {
    FakeKeyValueStore settings;
    Store store { settings };
    FakeGrabber grabber;
    UsKeyboardLayout layout;
    QStringList printed;
    HotKeyCenter center { store, grabber, layout, [this](const QString &line) { printed << line; } };

    Fixture()
    {
        store.setRegistrar(&center);
        store.declare(left);
        store.declare(right);
    }
};

} // namespace

class TestHotKeyCenter : public QObject
{
    Q_OBJECT

private slots:
    void handlersRegisterTheStoredShortcutsUnderGrowingIdentifiersTaggedLdgw()
    {
        Fixture f;
        QVERIFY(f.center.hotKeys().empty());
        int ups = 0;
        f.center.onKeyUp(left, [&ups] { ++ups; });
        f.center.onKeyUp(right, [] {});
        // A second handler of a registered name registers nothing more.
        f.center.onKeyDown(left, [] {});
        QCOMPARE(f.grabber.log, QStringList({ QStringLiteral("grab 1 2048"), QStringLiteral("grab 2 2560") }));
        QCOMPARE(f.grabber.signatures.value(1), 0x4C444757u);
        QCOMPARE(f.center.hotKeys().at(1).shortcut, optionSpace);
        QCOMPARE(f.center.hotKeys().at(2).carbonHotKeyId, 2);
        QVERIFY(f.center.isEnabled(left));
        QVERIFY(f.center.isEnabled(right));
        QVERIFY(f.printed.isEmpty());

        QVERIFY(f.grabber.tap(optionSpace));
        QCOMPARE(ups, 1);
    }

    void changingANamesShortcutReleasesTheOldHotKeyBeforeTakingTheNew()
    {
        Fixture f;
        int ups = 0;
        f.center.onKeyUp(left, [&ups] { ++ups; });
        f.grabber.log.clear();
        f.store.setShortcut(commandShiftL, left);
        QCOMPARE(f.grabber.log, QStringList({ QStringLiteral("ungrab 1"), QStringLiteral("grab 2 768") }));
        QVERIFY(!f.grabber.tap(optionSpace));
        QVERIFY(f.grabber.tap(commandShiftL));
        QCOMPARE(ups, 1);
    }

    void identifiersKeepGrowingAndAReRegisteredShortcutGetsANewOne()
    {
        Fixture f;
        f.center.onKeyUp(left, [] {});
        f.store.setShortcut(std::nullopt, left); // cleared: stored false
        QVERIFY(f.center.hotKeys().empty());
        QVERIFY(!f.center.isEnabled(left));
        f.store.setShortcut(optionSpace, left);
        f.center.disable({ left });
        f.center.enable({ left });
        QCOMPARE(f.grabber.log,
            QStringList({ QStringLiteral("grab 1 2048"), QStringLiteral("ungrab 1"), QStringLiteral("grab 2 2048"),
                QStringLiteral("ungrab 2"), QStringLiteral("grab 3 2048") }));
        QCOMPARE(f.center.hotKeys().begin()->first, 3);
        QVERIFY(f.printed.isEmpty());
    }

    void aClearedShortcutHasNoHotKeyAndNoLine()
    {
        Fixture f;
        f.store.setShortcut(std::nullopt, left);
        f.center.onKeyUp(left, [] {});
        QVERIFY(f.grabber.log.isEmpty());
        QVERIFY(f.printed.isEmpty());
    }

    void enableAndDisableLeaveTheHandlersInPlace()
    {
        Fixture f;
        int downs = 0;
        f.center.onKeyDown(left, [&downs] { ++downs; });
        f.center.disable({ left });
        QVERIFY(!f.center.isEnabled(left));
        QVERIFY(f.center.hasHandlers(left));
        QVERIFY(!f.grabber.press(optionSpace));
        f.center.enable({ left });
        QVERIFY(f.center.isEnabled(left));
        QVERIFY(f.grabber.press(optionSpace));
        QCOMPARE(downs, 1);
        // A name without handlers can be enabled too: its key is taken, nobody is told.
        f.center.enable({ right });
        QVERIFY(f.center.isEnabled(right));
        QVERIFY(f.grabber.press(shiftOptionSpace));
        QCOMPARE(downs, 1);
    }

    void keyDownAndKeyUpHandlersRunInTheOrderAddedThenTheStreams()
    {
        Fixture f;
        QStringList calls;
        f.center.onKeyDown(left, [&calls] { calls << QStringLiteral("down 1"); });
        auto stream = f.center.events(left);
        connect(stream.get(), &HotKeyEvents::occurred, this, [&calls](EventType type) {
            calls << (type == EventType::keyDown ? QStringLiteral("stream down") : QStringLiteral("stream up"));
        });
        f.center.onKeyDown(left, [&calls] { calls << QStringLiteral("down 2"); });
        f.center.onKeyUp(left, [&calls] { calls << QStringLiteral("up 1"); });
        QVERIFY(f.grabber.tap(optionSpace));
        QCOMPARE(calls,
            QStringList({ QStringLiteral("down 1"), QStringLiteral("down 2"), QStringLiteral("stream down"),
                QStringLiteral("up 1"), QStringLiteral("stream up") }));
        QCOMPARE(f.center.hotKeys().size(), std::size_t(1));
    }

    void aFilteredStreamSeesOnlyItsTypeAndTakesTheHotKeyWithItWhenItEnds()
    {
        Fixture f;
        auto releases = f.center.events(right, EventType::keyUp);
        int downs = 0, ups = 0;
        connect(releases.get(), &HotKeyEvents::keyDown, this, [&downs] { ++downs; });
        connect(releases.get(), &HotKeyEvents::keyUp, this, [&ups] { ++ups; });
        QVERIFY(f.center.isEnabled(right));
        QVERIFY(f.grabber.tap(shiftOptionSpace));
        QCOMPARE(downs, 0);
        QCOMPARE(ups, 1);
        releases.reset();
        QVERIFY(!f.center.hasHandlers(right));
        QVERIFY(!f.center.isEnabled(right));
        QVERIFY(f.grabber.grabbed.isEmpty());
    }

    void removingHandlersReleasesOnlyShortcutsNobodyUses()
    {
        Fixture f;
        int lefts = 0;
        f.center.onKeyUp(left, [&lefts] { ++lefts; });
        f.center.onKeyUp(right, [] {});
        // Both names on one shortcut: it stays while one of them has handlers.
        f.store.setShortcut(optionSpace, right);
        f.center.removeHandler(right);
        QVERIFY(f.center.isEnabled(left));
        QVERIFY(f.grabber.tap(optionSpace));
        QCOMPARE(lefts, 1);
        f.center.removeAllHandlers();
        QVERIFY(f.center.hotKeys().empty());
        QVERIFY(f.grabber.grabbed.isEmpty());
        QVERIFY(!f.center.hasHandlers(left));
    }

    void aPressIsRoutedToEveryNameWhoseStoredShortcutItIs()
    {
        Fixture f;
        QStringList calls;
        f.center.onKeyDown(left, [&calls] { calls << QStringLiteral("left"); });
        f.center.onKeyDown(right, [&calls] { calls << QStringLiteral("right"); });
        f.store.setShortcut(optionSpace, right);
        QVERIFY(f.grabber.press(optionSpace));
        QCOMPARE(calls, QStringList({ QStringLiteral("left"), QStringLiteral("right") }));
    }

    void eventsOfOthersAreNotHandled()
    {
        Fixture f;
        int downs = 0;
        f.center.onKeyDown(left, [&downs] { ++downs; });
        QVERIFY(f.center.dispatch({ hotKeySignature, 1 }, EventType::keyDown));
        QVERIFY(!f.center.dispatch({ 0x41424344, 1 }, EventType::keyDown));
        QVERIFY(!f.center.dispatch({ hotKeySignature, 99 }, EventType::keyDown));
        QCOMPARE(downs, 1);
    }

    void aShortcutHeldByAnotherClientPrintsOneLineAndRecordsNothing()
    {
        Fixture f;
        f.grabber.heldElsewhere << optionSpace;
        int rights = 0;
        f.center.onKeyUp(left, [] {});
        f.center.onKeyUp(right, [&rights] { ++rights; });
        QCOMPARE(f.printed,
            QStringList({ QStringLiteral(
                "Error registering hotkey ⌥Space: BadAccess (attempt to access private resource denied)") }));
        QVERIFY(!f.center.isEnabled(left));
        QCOMPARE(f.center.hotKeys().size(), std::size_t(1));
        QCOMPARE(f.center.hotKeys().begin()->first, 2);
        QVERIFY(f.grabber.tap(shiftOptionSpace));
        QCOMPARE(rights, 1);
    }

    void aModifierMaskWithUnknownBitsIsNotGrabbed()
    {
        Fixture f;
        f.settings.setValue(Store::keyFor(left), QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2049})"));
        f.center.onKeyUp(left, [] {});
        QVERIFY(f.grabber.log.isEmpty());
        QCOMPARE(
            f.printed, QStringList({ QStringLiteral("Error registering hotkey ⌥Space: unknown modifier bits 0x1") }));
    }

    void aStoredValueThatDoesNotDecodeIsNotGrabbed()
    {
        Fixture f;
        f.settings.setValue(Store::keyFor(left), QStringLiteral("[[[not json"));
        f.center.onKeyUp(left, [] {});
        QVERIFY(f.grabber.log.isEmpty());
        QCOMPARE(f.printed,
            QStringList({ QStringLiteral("Error registering hotkey toggleLeft: its stored value cannot be read") }));
    }

    void whilePausedAPressAndItsReleaseReachNoHandler()
    {
        Fixture f;
        QStringList calls;
        f.center.onKeyDown(left, [&calls] { calls << QStringLiteral("down"); });
        f.center.onKeyUp(left, [&calls] { calls << QStringLiteral("up"); });
        f.center.setPaused(true);
        QVERIFY(f.grabber.press(optionSpace, EventType::keyDown));
        f.center.setPaused(false); // the recorder stored it and stopped before the release
        QVERIFY(f.grabber.press(optionSpace, EventType::keyUp));
        QVERIFY(calls.isEmpty());
        QVERIFY(f.grabber.tap(optionSpace));
        QCOMPARE(calls, QStringList({ QStringLiteral("down"), QStringLiteral("up") }));
    }

    void whileAMenuIsTrackedTheGrabsAreGivenBackAndItsKeyEventsMatched()
    {
        Fixture f;
        QStringList calls;
        f.center.onKeyUp(left, [&calls] { calls << QStringLiteral("left"); });
        f.center.onKeyUp(right, [&calls] { calls << QStringLiteral("right"); });
        f.grabber.log.clear();
        f.center.setMenuTracking(true);
        QCOMPARE(f.grabber.log, QStringList({ QStringLiteral("ungrab 1"), QStringLiteral("ungrab 2") }));
        QVERIFY(f.center.isEnabled(left)); // the records stay
        // Option+Space in the open menu, Num Lock and all (not a modifier of ours).
        QVERIFY(f.center.handleMenuKeyEvent(int(Key::space), optionFlag | (1u << 21), EventType::keyUp));
        QVERIFY(!f.center.handleMenuKeyEvent(int(Key::space), controlFlag, EventType::keyUp));
        QVERIFY(!f.center.handleMenuKeyEvent(int(Key::a), optionFlag, EventType::keyUp));
        QCOMPARE(calls, QStringList({ QStringLiteral("left") }));
        // Held, then Option let go before Space: the repeats are taken from the menu
        // but toggle nothing, and the release is still the shortcut's.
        QVERIFY(f.center.handleMenuKeyEvent(int(Key::space), shiftFlag | optionFlag, EventType::keyDown));
        for (int repeat = 0; repeat < 3; ++repeat) {
            QVERIFY(f.center.handleMenuKeyEvent(int(Key::space), shiftFlag | optionFlag, EventType::keyUp, true));
            QVERIFY(f.center.handleMenuKeyEvent(int(Key::space), shiftFlag | optionFlag, EventType::keyDown, true));
        }
        QVERIFY(!f.center.handleMenuKeyEvent(int(Key::a), 0, EventType::keyDown, true));
        QCOMPARE(calls, QStringList({ QStringLiteral("left") }));
        QVERIFY(f.center.handleMenuKeyEvent(int(Key::space), 0, EventType::keyUp));
        QVERIFY(!f.center.handleMenuKeyEvent(int(Key::space), 0, EventType::keyUp));
        QCOMPARE(calls, QStringList({ QStringLiteral("left"), QStringLiteral("right") }));
        calls.clear();

        // A shortcut changed while the menu is open waits for it to close.
        f.store.setShortcut(commandShiftL, right);
        QVERIFY(f.grabber.grabbed.isEmpty());
        f.grabber.log.clear();
        f.center.setMenuTracking(false);
        QCOMPARE(f.grabber.log, QStringList({ QStringLiteral("grab 1 2048"), QStringLiteral("grab 3 768") }));
        QVERIFY(f.grabber.tap(commandShiftL));
        QCOMPARE(calls, QStringList({ QStringLiteral("right") }));
    }

    void anEditedSettingsFileMovesTheHotKeyToTheNewShortcut()
    {
        Fixture f;
        int lefts = 0;
        f.center.onKeyUp(left, [&lefts] { ++lefts; });
        f.center.onKeyUp(right, [] {});
        f.grabber.log.clear();
        f.center.storedShortcutsChanged(); // nothing changed: nothing moves
        QVERIFY(f.grabber.log.isEmpty());
        // Written behind the store's back, as by another program.
        f.settings.setValue(Store::keyFor(left), QString::fromUtf8(encodeShortcut(commandShiftL)));
        f.center.storedShortcutsChanged();
        QCOMPARE(f.grabber.log, QStringList({ QStringLiteral("ungrab 1"), QStringLiteral("grab 3 768") }));
        QVERIFY(f.grabber.tap(commandShiftL));
        QCOMPARE(lefts, 1);
        f.settings.setValue(Store::keyFor(left), false);
        f.center.storedShortcutsChanged();
        QVERIFY(!f.center.isEnabled(left));
        QCOMPARE(f.grabber.grabbed.size(), 1);
    }

    void aGrabLostAfterAKeyboardChangePrintsTheLineAndIsTakenAgainLater()
    {
        Fixture f;
        f.center.onKeyUp(left, [] {});
        f.grabber.grabbed.remove(1);
        f.grabber.lost({ hotKeySignature, 1 }, QStringLiteral("no key for code 49 in the current keyboard layout"));
        QCOMPARE(f.printed,
            QStringList({ QStringLiteral(
                "Error registering hotkey ⌥Space: no key for code 49 in the current keyboard layout") }));
        f.center.setMenuTracking(true);
        f.center.setMenuTracking(false);
        QCOMPARE(f.grabber.grabbed.value(1), optionSpace);
    }

    void aHandlerMayRemoveHandlersWhileItRuns()
    {
        Fixture f;
        int calls = 0;
        f.center.onKeyDown(left, [&f, &calls] {
            ++calls;
            f.center.removeAllHandlers();
        });
        f.center.onKeyDown(left, [&calls] { ++calls; });
        QVERIFY(f.grabber.press(optionSpace));
        QCOMPARE(calls, 2); // the press was delivered to the handlers it found
        QVERIFY(!f.grabber.press(optionSpace));
    }

    void theCentreGoingAwayGivesItsKeysBack()
    {
        FakeKeyValueStore settings;
        Store store(settings);
        store.declare(left);
        FakeGrabber grabber;
        UsKeyboardLayout layout;
        {
            HotKeyCenter center(store, grabber, layout, [](const QString &) {});
            center.onKeyUp(left, [] {});
            QCOMPARE(grabber.grabbed.size(), 1);
        }
        QVERIFY(grabber.grabbed.isEmpty());
        QVERIFY(!grabber.delivered);
    }
};

QTEST_GUILESS_MAIN(TestHotKeyCenter)
#include "test_hot_key_center.moc"
