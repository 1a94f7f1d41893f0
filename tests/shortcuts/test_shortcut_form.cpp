// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/presentable_description.h"
#include "shortcuts/shortcut.h"

#include <QTest>

using namespace ledgewise::GlobalShortcuts;

Q_DECLARE_METATYPE(ledgewise::GlobalShortcuts::Key)

class TestShortcutForm : public QObject
{
    Q_OBJECT

private slots:
    void commandShiftLIsStoredExactly()
    {
        const Shortcut shortcut(Key::l, commandFlag | shiftFlag);
        QCOMPARE(shortcut.carbonKeyCode, 37);
        QCOMPARE(shortcut.carbonModifiers, 768);
        QCOMPARE(encodeShortcut(shortcut), QByteArray(R"({"carbonKeyCode":37,"carbonModifiers":768})"));
        QCOMPARE(decodeShortcut(encodeShortcut(shortcut)), shortcut);
    }

    void commandShiftLReadsShiftCommandL()
    {
        const Shortcut shortcut(Key::l, commandFlag | shiftFlag);
        QCOMPARE(presentableDescription(shortcut, UsKeyboardLayout()), QStringLiteral("⇧⌘L"));
    }

    void modifierMasksBothWays()
    {
        QCOMPARE(hotKeyMask(controlFlag), 4096);
        QCOMPARE(hotKeyMask(optionFlag), 2048);
        QCOMPARE(hotKeyMask(shiftFlag), 512);
        QCOMPARE(hotKeyMask(commandFlag), 256);
        QCOMPARE(hotKeyMask(functionFlag), 131072);
        QCOMPARE(modifierFlags(4096), quint32(controlFlag));
        QCOMPARE(modifierFlags(2048), quint32(optionFlag));
        QCOMPARE(modifierFlags(512), quint32(shiftFlag));
        QCOMPARE(modifierFlags(256), quint32(commandFlag));
        QCOMPARE(modifierFlags(131072), quint32(functionFlag));
        const quint32 all = controlFlag | optionFlag | shiftFlag | commandFlag | functionFlag;
        QCOMPARE(hotKeyMask(all), 4096 + 2048 + 512 + 256 + 131072);
        QCOMPARE(modifierFlags(hotKeyMask(all)), all);
    }

    void otherBitsAreDropped()
    {
        // Caps Lock (bit 16) and device-dependent low bits are not modifiers of a shortcut.
        QCOMPARE(hotKeyMask((1u << 16) | 0xFF | commandFlag), 256);
        QCOMPARE(modifierFlags(256 | 1024 | 1 | 8192), quint32(commandFlag));
    }

    void qtModifiersMapToTheSameKeys()
    {
        QCOMPARE(modifierFlags(Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier),
            quint32(controlFlag | optionFlag | shiftFlag | commandFlag));
        QCOMPARE(modifierFlags(Qt::KeypadModifier), quint32(0));
        QCOMPARE(qtModifiers(optionFlag | functionFlag), Qt::KeyboardModifiers(Qt::AltModifier));
        QCOMPARE(qtModifiers(commandFlag | shiftFlag), Qt::MetaModifier | Qt::ShiftModifier);
    }

    void symbolsInTheirFixedOrder()
    {
        const quint32 all = functionFlag | commandFlag | shiftFlag | optionFlag | controlFlag;
        QCOMPARE(modifierSymbols(all), QString::fromUtf8("⌃⌥⇧⌘\U0001F310\uFE0E"));
        QCOMPARE(
            presentableDescription(Shortcut(Key::space, optionFlag), UsKeyboardLayout()), QStringLiteral("⌥Space"));
        QCOMPARE(presentableDescription(Shortcut(Key::space, shiftFlag | optionFlag), UsKeyboardLayout()),
            QStringLiteral("⌥⇧Space"));
    }

    void functionKeysByNumber()
    {
        const Key keys[] = { Key::f1, Key::f2, Key::f3, Key::f4, Key::f5, Key::f6, Key::f7, Key::f8, Key::f9, Key::f10,
            Key::f11, Key::f12, Key::f13, Key::f14, Key::f15, Key::f16, Key::f17, Key::f18, Key::f19, Key::f20 };
        for (int i = 0; i < 20; ++i)
            QCOMPARE(presentableDescription(Shortcut(keys[i], controlFlag), UsKeyboardLayout()),
                QStringLiteral("⌃F%1").arg(i + 1));
    }

    void specialKeysByName_data()
    {
        QTest::addColumn<Key>("key");
        QTest::addColumn<QString>("name");
        QTest::newRow("return") << Key::returnKey << "↩";
        QTest::newRow("delete") << Key::deleteKey << "⌫";
        QTest::newRow("forward delete") << Key::deleteForward << "⌦";
        QTest::newRow("escape") << Key::escape << "⎋";
        QTest::newRow("home") << Key::home << "↖";
        QTest::newRow("space") << Key::space << "Space";
        QTest::newRow("page up") << Key::pageUp << "⇞";
        QTest::newRow("page down") << Key::pageDown << "⇟";
        QTest::newRow("left") << Key::leftArrow << "←";
        QTest::newRow("up") << Key::upArrow << "↑";
        QTest::newRow("keypad 7") << Key::keypad7 << "7";
        QTest::newRow("keypad enter") << Key::keypadEnter << "⌤";
        QTest::newRow("keypad clear") << Key::keypadClear << "⌧";
    }
    void specialKeysByName()
    {
        QFETCH(Key, key);
        QFETCH(QString, name);
        // The layout is never asked for a special key: even one that types a letter.
        class EverythingIsX final : public KeyboardLayout
        {
        public:
            std::optional<QString> text(Key) const override { return QStringLiteral("x"); }
        };
        QCOMPARE(presentableDescription(Shortcut(key, 0u), EverythingIsX()), name);
    }

    void otherKeysAsTheLayoutTypesThemCapitalised()
    {
        const UsKeyboardLayout us;
        QCOMPARE(presentableDescription(Shortcut(Key::a, controlFlag), us), QStringLiteral("⌃A"));
        QCOMPARE(presentableDescription(Shortcut(Key::seven, 0u), us), QStringLiteral("7"));
        QCOMPARE(presentableDescription(Shortcut(Key::slash, commandFlag), us), QStringLiteral("⌘/"));
        QCOMPARE(presentableDescription(Shortcut(Key::section, 0u), us), QStringLiteral("§"));
        class Greek final : public KeyboardLayout
        {
        public:
            std::optional<QString> text(Key) const override { return QStringLiteral("ωx"); }
        };
        QCOMPARE(presentableDescription(Shortcut(Key::v, optionFlag), Greek()), QStringLiteral("⌥Ωx"));
    }

    void keyWithoutTextAddsNothing()
    {
        QCOMPARE(presentableDescription(Shortcut(Key::end, commandFlag), UsKeyboardLayout()), QStringLiteral("⌘"));
        QCOMPARE(presentableDescription(Shortcut(999, 256), UsKeyboardLayout()), QStringLiteral("⌘"));
    }

    void usTableCoversLettersDigitsAndPunctuation()
    {
        const UsKeyboardLayout us;
        QCOMPARE(us.text(Key::q), QStringLiteral("q"));
        QCOMPARE(us.text(Key::zero), QStringLiteral("0"));
        QCOMPARE(us.text(Key::backtick), QStringLiteral("`"));
        QCOMPARE(us.text(Key::quote), QStringLiteral("'"));
        QCOMPARE(us.text(Key::tab), std::nullopt);
    }

    void undecodableStoredTextsGiveNoShortcut_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("false") << QByteArray("false");
        QTest::newRow("garbage") << QByteArray("\xff\x00{", 3);
        QTest::newRow("array") << QByteArray("[37,768]");
        QTest::newRow("missing modifiers") << QByteArray(R"({"carbonKeyCode":37})");
        QTest::newRow("missing key") << QByteArray(R"({"carbonModifiers":768})");
        QTest::newRow("string numbers") << QByteArray(R"({"carbonKeyCode":"37","carbonModifiers":768})");
        QTest::newRow("fraction") << QByteArray(R"({"carbonKeyCode":37.5,"carbonModifiers":768})");
        QTest::newRow("huge") << QByteArray(R"({"carbonKeyCode":1e300,"carbonModifiers":768})");
        QTest::newRow("beyond int") << QByteArray(R"({"carbonKeyCode":2147483648,"carbonModifiers":0})");
        QTest::newRow("null") << QByteArray(R"({"carbonKeyCode":null,"carbonModifiers":768})");
        QTest::newRow("truncated") << QByteArray(R"({"carbonKeyCode":37,"carbonModifiers":76)");
    }
    void undecodableStoredTextsGiveNoShortcut()
    {
        QFETCH(QByteArray, stored);
        QCOMPARE(decodeShortcut(stored), std::nullopt);
    }

    void extraMembersAndNegativeCodesStillDecode()
    {
        QCOMPARE(decodeShortcut(R"({"carbonModifiers":2048,"carbonKeyCode":49,"note":1})"), Shortcut(49, 2048));
        QCOMPARE(decodeShortcut(R"({"carbonKeyCode":-1,"carbonModifiers":0})"), Shortcut(-1, 0));
    }

    void evdevMappingRoundTrips()
    {
        QCOMPARE(evdevCode(Key::a), 30);
        QCOMPARE(evdevCode(Key::space), 57);
        QCOMPARE(evdevCode(Key::l), 38);
        QCOMPARE(evdevCode(Key::f20), 190);
        for (int code = 0; code < 0x80; ++code) {
            if (const auto evdev = evdevCode(Key(code)))
                QCOMPARE(keyForEvdevCode(*evdev), Key(code));
        }
        QCOMPARE(evdevCode(Key(0x34)), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestShortcutForm)
#include "test_shortcut_form.moc"
