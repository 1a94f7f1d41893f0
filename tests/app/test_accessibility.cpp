// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Ledgewise as a screen reader meets it: over the accessibility bus (AT-SPI), the
// surfaces are frames named after their side, a drop's actions are buttons named by
// their titles that can be found by name and pressed.
#include "tests/support/atspi.h"
#include "tests/support/drag_source_process.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>

using namespace ledgewise::testing;

namespace {

// What assistive technology reads of an application: every frame, in tree order, one
// "role|name" a line.
QStringList framesOf(const QString &application)
{
    static const char script[] = R"(
import sys, time
import pyatspi
deadline = time.time() + 15
while time.time() < deadline:
    for app in pyatspi.Registry.getDesktop(0):
        if app is not None and app.name.lower() == sys.argv[1].lower() and app.childCount > 0:
            for index in range(app.childCount):
                child = app.getChildAtIndex(index)
                print(child.getRoleName() + "|" + (child.name or ""))
            sys.exit(0)
    time.sleep(0.2)
sys.exit(1)
)";
    QProcess probe;
    probe.start(QStringLiteral("/usr/bin/python3"), { QStringLiteral("-c"), QString::fromLatin1(script), application });
    probe.waitForFinished(30000);
    return QString::fromUtf8(probe.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// A screen reader's view of a menu: a popup menu is no child of its application in the
// accessibility tree, it is met through the focus moving onto one of its items. The
// probe says "listening" once it waits for that, then lists the menu's entries as
// "role|name", presses the item named, and says "pressed".
const char menuProbe[] = R"(
import sys, time
import pyatspi
from gi.repository import GLib

application = sys.argv[1]
deadline = time.time() + 20
while time.time() < deadline:
    if any(app is not None and app.name.lower() == application.lower() for app in pyatspi.Registry.getDesktop(0)):
        break
    time.sleep(0.2)

def menu_of(node):
    while node is not None:
        if node.getRoleName() in ("menu", "popup menu"):
            return node
        node = node.parent
    return None

def on_focus(event):
    try:
        menu = menu_of(event.source)
        if menu is None:
            return
        quit_item = None
        for index in range(menu.childCount):
            child = menu.getChildAtIndex(index)
            print(child.getRoleName() + "|" + (child.name or ""))
            if child.getRoleName() == "menu item" and child.name == sys.argv[2]:
                quit_item = child
        if quit_item is not None:
            # By its name, as a screen reader picks it: a menu item offers "SetFocus" too.
            action = quit_item.queryAction()
            action.doAction([action.getName(i) for i in range(action.nActions)].index("Press"))
            print("pressed")
        sys.stdout.flush()
        pyatspi.Registry.stop()
    except Exception as error:
        print("error", error)

pyatspi.Registry.registerEventListener(on_focus, "object:state-changed:focused", "focus:")
GLib.timeout_add_seconds(20, lambda: pyatspi.Registry.stop())
print("listening")
sys.stdout.flush()
pyatspi.Registry.start()
)";

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void theSurfaceMenuIsReadInOrderAndQuitIsPressedByName()
    {
        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 10000);
        // Each surface is a frame named after its side.
        const QStringList frames = framesOf(QStringLiteral("Ledgewise"));
        QVERIFY2(
            frames.contains(QStringLiteral("frame|Ledgewise left surface")), qPrintable(frames.join(QLatin1Char(';'))));
        QVERIFY2(frames.contains(QStringLiteral("frame|Ledgewise right surface")),
            qPrintable(frames.join(QLatin1Char(';'))));

        QProcess probe;
        probe.start(QStringLiteral("/usr/bin/python3"),
            { QStringLiteral("-u"), QStringLiteral("-c"), QString::fromLatin1(menuProbe), QStringLiteral("Ledgewise"),
                QStringLiteral("Quit Ledgewise") });
        QTRY_VERIFY_WITH_TIMEOUT(probe.canReadLine() || (probe.waitForReadyRead(100) && probe.canReadLine()), 20000);
        QCOMPARE(probe.readLine().trimmed(), QByteArray("listening"));
        // A secondary click on the left surface opens its menu.
        pointerTo(118, 14);
        xdotool({ QStringLiteral("click"), QStringLiteral("3") });
        // The menu takes the keyboard focus as it opens: that is where the probe meets it.
        QTRY_COMPARE_WITH_TIMEOUT(probe.state(), QProcess::NotRunning, 25000);
        const QStringList said
            = QString::fromUtf8(probe.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(said,
            QStringList({ QStringLiteral("menu item|Settings…"), QStringLiteral("menu item|Check for Updates…"),
                QStringLiteral("separator|"), QStringLiteral("menu item|Quit Ledgewise"), QStringLiteral("pressed") }));
        QTRY_COMPARE_WITH_TIMEOUT(app.state(), QProcess::NotRunning, 10000);
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.exitCode(), 0);
    }

    void dropActionsArePressedByName()
    {
        // A classic surface keeps its corners when it opens, so the drag below stays in it.
        storeStillClassicPreferences();

        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 10000);

        // Another application drags a text onto the left surface.
        QCOMPARE(dragTextOntoLeftSurface(QStringLiteral("read aloud")), QByteArray("copy"));

        // "Save" is a button that assistive technology finds by name and presses.
        QCOMPARE(press(QStringLiteral("push button"), QStringLiteral("Save")), QByteArray("pressed"));
        const QString saved = QDir::home().filePath(QStringLiteral("Downloads/Dropped.txt"));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(saved), 5000);
        QFile file(saved);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("read aloud"));

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAccessibility)
#include "test_accessibility.moc"
