// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/xkb_keyboard_layout.h"
#include "shortcuts/presentable_description.h"

#include <QProcess>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::GlobalShortcuts;

namespace {

bool setLayout(const QString &layout)
{
    QProcess process;
    process.start(QStringLiteral("setxkbmap"), { layout });
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

class TestXkbKeyboardLayout : public QObject
{
    Q_OBJECT

private slots:
    void usLayoutOnTheServer()
    {
        QVERIFY(setLayout(QStringLiteral("us")));
        XkbKeyboardLayout layout;
        QVERIFY(layout.isLive());
        QCOMPARE(layout.text(Key::a), QStringLiteral("a"));
        QCOMPARE(layout.text(Key::z), QStringLiteral("z"));
        QCOMPARE(layout.text(Key::semicolon), QStringLiteral(";"));
        QCOMPARE(layout.text(Key::tab), std::nullopt);
        QCOMPARE(presentableDescription(Shortcut(Key::z, commandFlag), layout), QStringLiteral("⌘Z"));
    }

    void followsTheServersLayout()
    {
        // The same physical keys type other letters in German and Dvorak layouts.
        QVERIFY(setLayout(QStringLiteral("de")));
        XkbKeyboardLayout german;
        QCOMPARE(german.text(Key::z), QStringLiteral("y"));
        QCOMPARE(presentableDescription(Shortcut(Key::semicolon, controlFlag), german), QStringLiteral("⌃Ö"));

        QVERIFY(setLayout(QStringLiteral("dvorak")));
        german.reload();
        QCOMPARE(german.text(Key::s), QStringLiteral("o"));
        QVERIFY(setLayout(QStringLiteral("us")));
    }

    void shortcutsAreReadInALayoutThatTypesAscii()
    {
        // Russian first and active: the readable form comes from the German group
        // configured beside it, not from the Cyrillic letters.
        QVERIFY(setLayout(QStringLiteral("ru,de")));
        XkbKeyboardLayout mixed;
        QVERIFY(mixed.isLive());
        QCOMPARE(mixed.text(Key::z), QStringLiteral("y"));
        QCOMPARE(presentableDescription(Shortcut(Key::q, commandFlag), mixed), QStringLiteral("⌘Q"));

        // Only Greek: nothing on the server types ASCII, so the US table answers.
        QVERIFY(setLayout(QStringLiteral("gr")));
        XkbKeyboardLayout greek;
        QVERIFY(!greek.isLive());
        QCOMPARE(greek.text(Key::z), QStringLiteral("z"));
        QVERIFY(setLayout(QStringLiteral("us")));
    }

    void withoutAServerTheUsLayoutAnswers()
    {
        const QByteArray display = qgetenv("DISPLAY");
        qputenv("DISPLAY", ":9999");
        XkbKeyboardLayout layout;
        qputenv("DISPLAY", display);
        QVERIFY(!layout.isLive());
        QCOMPARE(layout.text(Key::z), QStringLiteral("z"));
    }
};

QTEST_GUILESS_MAIN(TestXkbKeyboardLayout)
#include "test_xkb_keyboard_layout.moc"
