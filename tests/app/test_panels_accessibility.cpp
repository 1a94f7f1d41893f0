// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The panels as a screen reader meets them: over the accessibility bus (AT-SPI), the
// buttons, rows and the address field of the clipboard, timer and launcher panels are
// found by name and role, and pressing them does what clicking does; and where they
// are, to click them (the launcher's App, and the file chooser it opens).
#include "app/preferences_codec.h"
#include "tests/support/atspi.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRect>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise::testing;

namespace {

// Finds a control of Ledgewise on screen by role and name over AT-SPI (hidden ones, such
// as the running timer's Cancel while it is idle, do not count; waiting up to 15
// seconds), then presses it ("press"), says where its centre is on the screen
// ("centre"), or only says it is there ("find"); "absent" waits for it to be gone.
const char probeScript[] = "import os, sys, time\n"
                           "import pyatspi\n"
                           "sys.path.insert(0, os.path.join(os.environ['LEDGEWISE_SOURCE_DIR'], 'tests', 'support'))\n"
                           "from atspi_common import find\n"
                           "def main():\n"
                           "    mode, role, name = sys.argv[1:4]\n"
                           "    deadline = time.time() + 15\n"
                           "    while time.time() < deadline:\n"
                           "        for app in pyatspi.Registry.getDesktop(0):\n"
                           "            if app is None or app.name.lower() != 'ledgewise':\n"
                           "                continue\n"
                           "            control = find(app, role, name, showing_only=True)\n"
                           "            if mode == 'absent' and control is None:\n"
                           "                print('absent')\n"
                           "                return 0\n"
                           "            if control is None or mode == 'absent':\n"
                           "                continue\n"
                           "            if mode == 'press':\n"
                           "                control.queryAction().doAction(0)\n"
                           "                print('pressed')\n"
                           "            elif mode == 'centre':\n"
                           "                box = control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)\n"
                           "                print('%d %d' % (box.x + box.width // 2, box.y + box.height // 2))\n"
                           "            else:\n"
                           "                print('found')\n"
                           "            return 0\n"
                           "        time.sleep(0.2)\n"
                           "    print('no %s named %r' % (role, name))\n"
                           "    return 1\n"
                           "sys.exit(main())\n";

// The clipboard history on disk: text -> pinned.
QMap<QString, bool> historyOnDisk()
{
    QFile file(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                   .filePath(QStringLiteral("Ledgewise/clipboard.json")));
    QMap<QString, bool> history;
    if (!file.open(QIODevice::ReadOnly))
        return history;
    for (const QJsonValue &entry : QJsonDocument::fromJson(file.readAll()).array())
        history.insert(entry.toObject().value(QStringLiteral("text")).toString(),
            entry.toObject().value(QStringLiteral("isPinned")).toBool());
    return history;
}

// The titles of the pinned entries, as saved.
QStringList launcherTitlesOnDisk()
{
    QSettings settings(settingsPath(), QSettings::NativeFormat);
    const auto preferences
        = ledgewise::decodePreferences(settings.value(QStringLiteral("ledgewise.preferences")).toByteArray());
    QStringList titles;
    if (preferences) {
        for (const ledgewise::LauncherItem &item : preferences->launcherItems)
            titles << item.title;
    }
    return titles;
}

} // namespace

class TestPanelsAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scripts.isValid());
        QFile probe(m_scripts.filePath(QStringLiteral("probe.py")));
        QVERIFY(probe.open(QIODevice::WriteOnly));
        probe.write(probeScript);
    }

    void panelControlsArePressedByName()
    {
        // Classic corners and no animation: the surfaces open at once, with square tops.
        storeStillClassicPreferences();

        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 10000);

        // Another application copies two texts.
        QVERIFY(copyElsewhere("older entry"));
        QTRY_VERIFY_WITH_TIMEOUT(historyOnDisk().contains(QStringLiteral("older entry")), 5000);
        QVERIFY(copyElsewhere("newer entry"));
        QTRY_VERIFY_WITH_TIMEOUT(historyOnDisk().contains(QStringLiteral("newer entry")), 5000);

        // The left surface opens on a click; its clipboard rows' buttons say what they do.
        clickSurface(QStringLiteral("left"));
        QCOMPARE(probe("press", "push button", "Pin older entry"), QByteArray("pressed"));
        QTRY_VERIFY(historyOnDisk().value(QStringLiteral("older entry")));
        QCOMPARE(probe("press", "push button", "Unpin older entry"), QByteArray("pressed"));
        QTRY_VERIFY(!historyOnDisk().value(QStringLiteral("older entry")));
        QCOMPARE(historyOnDisk().size(), 2);

        // The row itself, named by its title, copies the entry back.
        QCOMPARE(probe("press", "push button", "older entry"), QByteArray("pressed"));
        QTRY_COMPARE(pasteElsewhere(), QByteArray("older entry"));

        QCOMPARE(probe("press", "push button", "Delete newer entry"), QByteArray("pressed"));
        QTRY_VERIFY(!historyOnDisk().contains(QStringLiteral("newer entry")));
        QCOMPARE(historyOnDisk().keys(), QStringList({ "older entry" }));

        // The timer: a preset starts a countdown, Cancel ends it, Start starts the custom one.
        QCOMPARE(probe("absent", "push button", "Cancel"), QByteArray("absent"));
        QCOMPARE(probe("press", "push button", "5m"), QByteArray("pressed"));
        QCOMPARE(probe("absent", "push button", "5m"), QByteArray("absent"));
        QCOMPARE(probe("press", "push button", "Cancel"), QByteArray("pressed"));
        QCOMPARE(probe("absent", "push button", "Cancel"), QByteArray("absent"));
        QCOMPARE(probe("press", "push button", "Start"), QByteArray("pressed"));
        QCOMPARE(probe("absent", "push button", "Start"), QByteArray("absent"));
        QCOMPARE(probe("press", "push button", "Cancel"), QByteArray("pressed"));
        QCOMPARE(probe("find", "push button", "5m"), QByteArray("found"));

        // The right surface: the address field is found by its name, typed into, and
        // "Add site" adds the site.
        clickSurface(QStringLiteral("right"));
        const QStringList centre = QString::fromUtf8(probe("centre", "text", "Address")).split(QLatin1Char(' '));
        QCOMPARE(centre.size(), 2);
        xdotool({ QStringLiteral("mousemove"), centre[0], centre[1], QStringLiteral("click"), QStringLiteral("1") });
        QTest::qWait(300);
        xdotool({ QStringLiteral("type"), QStringLiteral("example.org") });
        QCOMPARE(probe("press", "push button", "Add site"), QByteArray("pressed"));
        QTRY_COMPARE_WITH_TIMEOUT(launcherTitlesOnDisk(), QStringList({ "example.org" }), 5000);

        // The row's remove button is named after what it removes.
        QCOMPARE(probe("find", "push button", "example.org"), QByteArray("found"));
        QCOMPARE(probe("press", "push button", "Remove example.org"), QByteArray("pressed"));
        QTRY_COMPARE_WITH_TIMEOUT(launcherTitlesOnDisk(), QStringList(), 5000);

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }

    void appPinnedThroughTheChooserAfterClicksInsideItKeepsLedgewiseRunning()
    {
        // An application of the user's own to pin.
        const QString entry = QDir::home().filePath(QStringLiteral("marker.desktop"));
        QFile file(entry);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Marker\nExec=true\n");
        file.close();
        storeStillClassicPreferences();

        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 10000);
        clickSurface(QStringLiteral("right"));
        // "App", clicked where the screen reader says it is.
        const QStringList appButton = QString::fromUtf8(probe("centre", "push button", "App")).split(QLatin1Char(' '));
        QCOMPARE(appButton.size(), 2);
        QProcess user;
        QVERIFY(clickInsideOnceShown(user, QStringLiteral("Choose an app to pin in Ledgewise.")));
        xdotool(
            { QStringLiteral("mousemove"), appButton[0], appButton[1], QStringLiteral("click"), QStringLiteral("1") });
        QTRY_COMPARE_WITH_TIMEOUT(user.state(), QProcess::NotRunning, 20000);
        QCOMPARE(user.exitCode(), 0);
        QCOMPARE(app.state(), QProcess::Running);
        // The surface stayed open under the dialog.
        QCOMPARE(probe("find", "push button", "App"), QByteArray("found"));

        // The Desktop Entry typed into the chooser's file name field.
        const QStringList name = QString::fromUtf8(probe("centre", "text", "File name:")).split(QLatin1Char(' '));
        QCOMPARE(name.size(), 2);
        xdotool({ QStringLiteral("mousemove"), name[0], name[1], QStringLiteral("click"), QStringLiteral("1") });
        xdotool({ QStringLiteral("key"), QStringLiteral("ctrl+a"), QStringLiteral("BackSpace") });
        xdotool({ QStringLiteral("type"), entry });
        // Return, again if its completion list took the first one.
        for (int attempt = 0; attempt < 3 && launcherTitlesOnDisk().isEmpty(); ++attempt) {
            xdotool({ QStringLiteral("key"), QStringLiteral("Return") });
            if (QTest::qWaitFor([] { return !launcherTitlesOnDisk().isEmpty(); }, 3000))
                break;
        }
        QCOMPARE(launcherTitlesOnDisk(), QStringList({ "Marker" }));
        QCOMPARE(probe("absent", "dialog", "Choose an app to pin in Ledgewise."), QByteArray("absent"));
        QCOMPARE(app.state(), QProcess::Running);

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.exitCode(), 0);
    }

private:
    // A side's window geometry on screen: x, y, width, height.
    static QRect surfaceRect(const QString &window)
    {
        const QString geometry = xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window });
        int x = 0, y = 0, width = 0, height = 0;
        for (const QString &line : geometry.split(QLatin1Char('\n'))) {
            const QString value = line.section(QLatin1Char('='), 1);
            if (line.startsWith(QLatin1String("X=")))
                x = value.toInt();
            else if (line.startsWith(QLatin1String("Y=")))
                y = value.toInt();
            else if (line.startsWith(QLatin1String("WIDTH=")))
                width = value.toInt();
            else if (line.startsWith(QLatin1String("HEIGHT=")))
                height = value.toInt();
        }
        return QRect(x, y, width, height);
    }

    // A click in the middle of a side's surface, which opens it. Under a loaded machine
    // the first click can arrive before the surface takes input, so it is clicked again
    // until it has opened.
    static void clickSurface(const QString &side)
    {
        const QString window = surfaceWindow(side);
        QVERIFY(!window.isEmpty());
        const QRect collapsed = surfaceRect(window);
        QVERIFY(collapsed.width() > 0 && collapsed.height() > 0);
        for (int attempt = 0; attempt < 3; ++attempt) {
            xdotool({ QStringLiteral("mousemove"), QString::number(collapsed.center().x()),
                QString::number(collapsed.center().y()), QStringLiteral("click"), QStringLiteral("1") });
            if (QTest::qWaitFor([&] { return surfaceRect(window).height() > 100; }, 5000))
                return;
        }
        QFAIL("the surface did not open on a click");
    }

    QByteArray probe(const char *mode, const char *role, const char *name)
    {
        QProcess probe;
        probe.setProcessChannelMode(QProcess::MergedChannels);
        probe.start(QStringLiteral("/usr/bin/python3"),
            { m_scripts.filePath(QStringLiteral("probe.py")), QString::fromLatin1(mode), QString::fromLatin1(role),
                QString::fromUtf8(name) });
        probe.waitForFinished(30000);
        return probe.readAll().trimmed();
    }

    QTemporaryDir m_scripts;
};

QTEST_GUILESS_MAIN(TestPanelsAccessibility)
#include "test_panels_accessibility.moc"
