// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The panels inside real surfaces, driven with xdotool: typing a site into the
// launcher, opening it in the default browser and removing it, pinning and starting an
// application and a file through the real file chooser (clicked about in, answered
// or cancelled), starting a countdown that turns the sleeping surfaces active, copying
// back from the clipboard history, and the newest Downloads.
#include "app/app_model.h"
#include "app/preferences_store.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/timer/timer_session.h"
#include "surfaces/notch_controller.h"
#include "tests/support/quick_item_search.h"
#include "tests/support/test_files.h"
#include "tests/support/x11_tools.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

void clickOn(QQuickItem *item)
{
    const QPointF centre = item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2));
    xdotool({ QStringLiteral("mousemove"), QString::number(int(centre.x())), QString::number(int(centre.y())),
        QStringLiteral("click"), QStringLiteral("1") });
}

// Shown and placed by its layout (a new row is visible before it has a size).
bool placed(QQuickItem *item)
{
    return item && item->isVisible() && item->width() > 0 && item->height() > 0;
}

// The distance from the bottom of `upper` to the top of `lower`, on screen.
qreal gap(QQuickItem *upper, QQuickItem *lower)
{
    return lower->mapToScene(QPointF(0, 0)).y() - upper->mapToScene(QPointF(0, upper->height())).y();
}

} // namespace

class TestPanelsEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // A browser of our own as the user's default for web addresses: it writes down
        // what it was asked to open.
        m_home = QDir::homePath();
        const QString applications = QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                                         .filePath(QStringLiteral("applications"));
        QVERIFY(QDir().mkpath(applications));
        writeFile(QDir(m_home).filePath(QStringLiteral("browser.sh")),
            "#!/bin/sh\nprintf '%s' \"$1\" > \"$HOME/opened.txt\"\n", true);
        writeFile(QDir(applications).filePath(QStringLiteral("test-browser.desktop")),
            "[Desktop Entry]\nType=Application\nName=Test Browser\nExec=" + QDir(m_home).filePath("browser.sh").toUtf8()
                + " %u\nMimeType=x-scheme-handler/https;x-scheme-handler/http;\n");
        QProcess mime;
        mime.start(QStringLiteral("xdg-mime"),
            { QStringLiteral("default"), QStringLiteral("test-browser.desktop"),
                QStringLiteral("x-scheme-handler/https") });
        QVERIFY(mime.waitForFinished(10000));
        QCOMPARE(mime.exitCode(), 0);
    }

    void init()
    {
        m_model = std::make_unique<AppModel>();
        m_model->start();
        m_model->prefs().setCurrent(Preferences::defaults()); // each case starts from the defaults
    }
    void cleanup() { m_model.reset(); }

    void typingASiteIntoTheLauncherPinsIt()
    {
        NotchWindowController *right = typeIntoTheLaunchersAddressField(QStringLiteral("example.org"));
        if (QTest::currentTestFailed())
            return;
        QQuickItem *root = right->window()->rootObject();
        QQuickItem *field = findItem(root, QStringLiteral("addressField"));
        xdotool({ QStringLiteral("key"), QStringLiteral("Return") });
        QTest::qWait(200);
        QVERIFY(m_model->prefs().current().launcherItems.isEmpty()); // Return adds nothing

        clickOn(findItem(root, QStringLiteral("addSiteButton")));
        QTRY_COMPARE(m_model->prefs().current().launcherItems.size(), 1);
        QCOMPARE(m_model->prefs().current().launcherItems[0].title, QStringLiteral("example.org"));
        QCOMPARE(m_model->prefs().current().launcherItems[0].urlString, QStringLiteral("https://example.org"));
        QTRY_COMPARE(field->property("text").toString(), QString());
        QTRY_VERIFY(!findItem(root, QStringLiteral("launcherHint"))->isVisible());

        // Closing the surface gives the keyboard back.
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("600"), QStringLiteral("click"),
            QStringLiteral("1") });
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::sleeping);
        QVERIFY(right->window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }

    void eachSurfacesAddressFieldTakesTheKeyboardInTurn()
    {
        m_model->prefs().update([](Preferences &p) {
            p.leftModuleIDs = { ModuleID::launcher };
            p.rightModuleIDs = { ModuleID::launcher };
        });
        NotchWindowController *left = typeIntoTheLaunchersAddressField(QStringLiteral("left.example"), NotchSide::left);
        if (QTest::currentTestFailed())
            return;
        // The right field gets the keyboard after the left one had it; the click there
        // closed the left surface, which gave its keyboard back.
        NotchWindowController *right
            = typeIntoTheLaunchersAddressField(QStringLiteral("right.example"), NotchSide::right);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(left->surface()->presentation(), NotchPresentation::sleeping);
        QVERIFY(left->window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
        // And back to the left one.
        typeIntoTheLaunchersAddressField(QStringLiteral("again.example"), NotchSide::left);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(right->surface()->presentation(), NotchPresentation::sleeping);

        // Closing both gives the keyboard back.
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("600"), QStringLiteral("click"),
            QStringLiteral("1") });
        QTRY_COMPARE(left->surface()->presentation(), NotchPresentation::sleeping);
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::sleeping);
        QVERIFY(left->window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
        QVERIFY(right->window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }

    void addressFieldTakesTheKeyboardBackAfterACancelledChooser()
    {
        NotchWindowController *right = typeIntoTheLaunchersAddressField(QStringLiteral("example"));
        if (QTest::currentTestFailed())
            return;
        QQuickItem *root = right->window()->rootObject();
        QProcess user;
        QVERIFY(clickInsideOnceShown(user, QStringLiteral("Choose an app to pin in Ledgewise.")));
        clickOn(findItem(root, QStringLiteral("addApp")));
        QTRY_COMPARE_WITH_TIMEOUT(user.state(), QProcess::NotRunning, 20000);
        QVERIFY(!openChooser().isEmpty());
        xdotool({ QStringLiteral("key"), QStringLiteral("Escape") });
        QTRY_VERIFY(openChooser().isEmpty());
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);

        // A click in the field, which kept its focus, brings the keys back to it.
        QQuickItem *field = findItem(root, QStringLiteral("addressField"));
        clickOn(field);
        QTRY_VERIFY(right->window()->isActive());
        xdotool({ QStringLiteral("type"), QStringLiteral(".org") });
        QTRY_COMPARE(field->property("text").toString(), QStringLiteral("example.org"));
    }

    void addedSiteOpensInTheDefaultBrowserAndItsRemoveButtonRemovesIt()
    {
        NotchWindowController *right = typeIntoTheLaunchersAddressField(QStringLiteral("example.org"));
        if (QTest::currentTestFailed())
            return;
        QQuickItem *root = right->window()->rootObject();
        clickOn(findItem(root, QStringLiteral("addSiteButton")));
        QTRY_COMPARE(m_model->prefs().current().launcherItems.size(), 1);

        // A click on the row opens the site in the default browser.
        QQuickItem *row = nullptr;
        QTRY_VERIFY((row = findItem(root, QStringLiteral("launcherRow_0"))) && placed(row));
        QCOMPARE(findItem(row, QStringLiteral("rowSymbol"))->property("name").toString(), QStringLiteral("globe"));
        const QString opened = QDir(m_home).filePath(QStringLiteral("opened.txt"));
        QFile::remove(opened);
        clickOn(findItem(row, QStringLiteral("rowTitle")));
        QTRY_COMPARE_WITH_TIMEOUT(readAll(opened), QByteArray("https://example.org"), 15000);
        QVERIFY(QFile::remove(opened));

        // Its remove button removes it, and opens nothing.
        QQuickItem *remove = findItem(row, QStringLiteral("removeButton"));
        QVERIFY(remove && remove->isVisible());
        clickOn(remove);
        QTRY_VERIFY(m_model->prefs().current().launcherItems.isEmpty());
        QTRY_VERIFY(findItem(root, QStringLiteral("launcherHint"))->isVisible());
        QTest::qWait(1000); // a browser started by mistake would have written by now
        QVERIFY(!QFile::exists(opened));
    }

    void pinnedApplicationStartsWhenItsRowIsClicked()
    {
        // An application of the user's own, which notes that it ran.
        const QString ran = QDir(m_home).filePath(QStringLiteral("ran.txt"));
        const QString entryPath = QDir(m_home).filePath(QStringLiteral("marker.desktop"));
        writeFile(entryPath,
            "[Desktop Entry]\nType=Application\nName=Marker\nExec=sh -c \"echo started > ran.txt\" %U\nPath="
                + m_home.toUtf8() + "\n");

        NotchWindowController *right = openLauncher();
        QVERIFY(right);
        QQuickItem *root = right->window()->rootObject();

        // "App" opens the chooser; the user clicks about inside it before answering.
        QProcess user;
        QVERIFY(clickInsideOnceShown(user, QStringLiteral("Choose an app to pin in Ledgewise.")));
        clickOn(findItem(root, QStringLiteral("addApp")));
        QTRY_COMPARE_WITH_TIMEOUT(user.state(), QProcess::NotRunning, 20000);
        QCOMPARE(user.exitCode(), 0);
        const QString dialog = openChooser();
        QVERIFY(!dialog.isEmpty());
        QCOMPARE(
            xdotool({ QStringLiteral("getwindowname"), dialog }), QStringLiteral("Choose an app to pin in Ledgewise."));
        // It opens among the installed applications.
        const QStringList request = chooserRequest();
        QVERIFY2(request.indexOf(QStringLiteral("--start-folder")) >= 0
                && request.value(request.indexOf(QStringLiteral("--start-folder")) + 1)
                    == QStringLiteral("/usr/share/applications"),
            qPrintable(request.join(QLatin1Char(' '))));
        // Clicks in Ledgewise's own dialog are not clicks elsewhere.
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);

        answerChooser(dialog, entryPath);
        QTRY_COMPARE_WITH_TIMEOUT(m_model->prefs().current().launcherItems.size(), 1, 15000);
        QTRY_VERIFY(openChooser().isEmpty());
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);

        QQuickItem *row = nullptr;
        QTRY_VERIFY((row = findItem(root, QStringLiteral("launcherRow_0"))) && placed(row));
        QCOMPARE(findItem(row, QStringLiteral("rowTitle"))->property("text").toString(), QStringLiteral("Marker"));
        QCOMPARE(findItem(row, QStringLiteral("rowSymbol"))->property("name").toString(), QStringLiteral("app"));
        clickOn(findItem(row, QStringLiteral("rowTitle")));
        QTRY_COMPARE_WITH_TIMEOUT(readAll(ran), QByteArray("started\n"), 15000);
    }

    void fileChosenAfterClicksInsideTheChooserIsPinned()
    {
        const QString notes = QDir(m_home).filePath(QStringLiteral("notes.txt"));
        writeFile(notes, "notes");
        NotchWindowController *right = openLauncher();
        QVERIFY(right);
        QProcess user;
        QVERIFY(clickInsideOnceShown(user, QStringLiteral("Choose a file to pin in Ledgewise.")));
        clickOn(findItem(right->window()->rootObject(), QStringLiteral("addFile")));
        QTRY_COMPARE_WITH_TIMEOUT(user.state(), QProcess::NotRunning, 20000);
        QCOMPARE(user.exitCode(), 0);
        const QString dialog = openChooser();
        QVERIFY(!dialog.isEmpty());
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);

        answerChooser(dialog, notes);
        QTRY_COMPARE_WITH_TIMEOUT(m_model->prefs().current().launcherItems.size(), 1, 15000);
        const LauncherItem pinned = m_model->prefs().current().launcherItems.constFirst();
        QCOMPARE(pinned.title, QStringLiteral("notes"));
        QCOMPARE(pinned.kind, LauncherItem::Kind::file);
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);

        // With no dialog of ours open, a click in another application's window closes it.
        QProcess other;
        other.start(qEnvironmentVariable("WINDOW_HELPER"),
            { QStringLiteral("600"), QStringLiteral("500"), QStringLiteral("200"), QStringLiteral("150") });
        QVERIFY(other.waitForReadyRead(10000));
        QCOMPARE(other.readLine().trimmed(), QByteArray("ready"));
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("575"), QStringLiteral("click"),
            QStringLiteral("1") });
        QByteArray said;
        QTRY_VERIFY((said += other.readAll()).contains("pressed 700 575"));
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::sleeping);
        other.kill();
        other.waitForFinished();
    }

    void cancelledChooserPinsNothingAndKeepsTheSurfaceOpen()
    {
        NotchWindowController *right = openLauncher();
        QVERIFY(right);
        QProcess user;
        QVERIFY(clickInsideOnceShown(user, QStringLiteral("Choose an app to pin in Ledgewise.")));
        clickOn(findItem(right->window()->rootObject(), QStringLiteral("addApp")));
        QTRY_COMPARE_WITH_TIMEOUT(user.state(), QProcess::NotRunning, 20000);
        QVERIFY(!openChooser().isEmpty());

        // A click in another application while the chooser is open leaves the surface
        // open: it waits for the dialog it asked for.
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("5"), QStringLiteral("970"), QStringLiteral("click"),
            QStringLiteral("1") });
        // The clicks inside gave the chooser the keyboard: Escape cancels it.
        xdotool({ QStringLiteral("key"), QStringLiteral("Escape") });
        QTRY_VERIFY(openChooser().isEmpty());
        QCOMPARE(right->surface()->presentation(), NotchPresentation::expanded);
        QVERIFY(m_model->prefs().current().launcherItems.isEmpty());
        // Nothing answers late either.
        QCoreApplication::processEvents();
        QVERIFY(m_model->prefs().current().launcherItems.isEmpty());
        QVERIFY(findItem(right->window()->rootObject(), QStringLiteral("launcherHint"))->isVisible());
    }

    void leftSurfaceShowsTheNewestDownloads()
    {
        writeFile(QDir(m_home).filePath(QStringLiteral("Downloads/holiday-photos.zip")), "zip");
        NotchWindowController *left = surface(NotchSide::left);
        left->behaviour().toggleExpanded();
        QTRY_COMPARE(left->frameInScreen().size(), QSize(268, 340));
        QQuickItem *row = nullptr;
        QTRY_VERIFY((row = findItem(left->window()->rootObject(), QStringLiteral("downloadsRow_0"))) && placed(row));
        QTRY_COMPARE(findItem(row, QStringLiteral("rowTitle"))->property("text").toString(),
            QStringLiteral("holiday-photos.zip"));
        QTRY_COMPARE(
            findItem(row, QStringLiteral("rowSubtitle"))->property("text").toString(), QStringLiteral("Ready"));
        // On screen, inside the open surface.
        const QRectF shown = row->mapRectToScene(QRectF(0, 0, row->width(), row->height()));
        QVERIFY(shown.bottom() <= left->window()->height());
        QVERIFY(shown.width() > 0);
    }

    void fiveMinutePresetTurnsTheSleepingSurfacesActive()
    {
        NotchWindowController *left = surface(NotchSide::left);
        left->behaviour().toggleExpanded();
        QTRY_COMPARE(left->frameInScreen().size(), QSize(268, 340));
        QQuickItem *preset = nullptr;
        QTRY_VERIFY(
            (preset = findItem(left->window()->rootObject(), QStringLiteral("preset_5"))) && preset->isVisible());
        // The timer's parts are spaced as the surface stacks its panels.
        QQuickItem *stack = findItem(left->window()->rootObject(), QStringLiteral("expandedPanel"));
        QQuickItem *title = findItem(left->window()->rootObject(), QStringLiteral("timerTitle"));
        QQuickItem *presets = findItem(left->window()->rootObject(), QStringLiteral("presetRow"));
        QQuickItem *custom = findItem(left->window()->rootObject(), QStringLiteral("customRow"));
        QVERIFY(stack && title && presets && custom);
        QTRY_COMPARE(gap(title, presets), stack->property("spacing").toReal());
        QCOMPARE(gap(presets, custom), stack->property("spacing").toReal());
        clickOn(preset);
        QTRY_VERIFY(m_model->timer().isRunning());
        QCOMPARE(m_model->timer().lastPresetMinutes(), 5);

        xdotool({ QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("600"), QStringLiteral("click"),
            QStringLiteral("1") });
        QTRY_COMPARE(left->surface()->presentation(), NotchPresentation::active);
        NotchWindowController *right = surface(NotchSide::right);
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::active);
        QVERIFY(left->surface()->glanceText() == QStringLiteral("5:00")
            || left->surface()->glanceText() == QStringLiteral("4:59"));
        QTRY_COMPARE(right->frameInScreen().size(), QSize(124, 30));
        m_model->timer().cancel();
        QTRY_COMPARE(left->surface()->presentation(), NotchPresentation::sleeping);
    }

    void copiedTextShowsInTheClipboardPanelAndAClickCopiesItBack()
    {
        // Another application copies two texts.
        for (const char *text : { "first copy", "second copy" }) {
            QVERIFY(copyElsewhere(text));
            QTRY_VERIFY(!m_model->clipboard().items().isEmpty()
                && m_model->clipboard().items().constFirst().text == QString::fromLatin1(text));
        }
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        NotchWindowController *left = surface(NotchSide::left);
        left->behaviour().toggleExpanded();
        QTRY_COMPARE(left->frameInScreen().size(), QSize(268, 340));
        QQuickItem *older = nullptr;
        QTRY_VERIFY(
            (older = findItem(left->window()->rootObject(), QStringLiteral("clipboardRow_1"))) && older->isVisible());
        QCOMPARE(
            findItem(older, QStringLiteral("rowTitle"))->property("text").toString(), QStringLiteral("first copy"));

        clickOn(findItem(older, QStringLiteral("rowTitle")));
        // xdotool returns once the click is sent; the row copies when the click arrives.
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("first copy"));
        QCOMPARE(pasteElsewhere(), QByteArray("first copy"));
        QCOMPARE(m_model->clipboard().items().size(), 2); // not captured again
    }

private:
    // Opens the surface on `side` (classic corners: an open pill is a capsule whose top
    // corners, where a row's remove button sits, are cut away), clicks the launcher's
    // address field and types `text` into it with the keyboard.
    NotchWindowController *typeIntoTheLaunchersAddressField(const QString &text, NotchSide side = NotchSide::right)
    {
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        NotchWindowController *controller = surface(side);
        controller->behaviour().toggleExpanded();
        [&] {
            QTRY_COMPARE(controller->frameInScreen().size(), QSize(268, 340));
            QQuickItem *field = nullptr;
            QTRY_VERIFY((field = findItem(controller->window()->rootObject(), QStringLiteral("addressField")))
                && field->isVisible());
            clickOn(field);
            QTRY_VERIFY(field->hasActiveFocus());
            QTRY_VERIFY(controller->window()->isActive());
            xdotool({ QStringLiteral("type"), text });
            QTRY_COMPARE(field->property("text").toString(), text);
        }();
        return controller;
    }

    // The right surface open on the launcher, its "App" and "File" buttons laid out.
    NotchWindowController *openLauncher()
    {
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        NotchWindowController *right = surface(NotchSide::right);
        right->behaviour().toggleExpanded();
        bool ready = false;
        [&] {
            QTRY_COMPARE(right->frameInScreen().size(), QSize(268, 340));
            QQuickItem *root = right->window()->rootObject();
            QTRY_VERIFY(
                placed(findItem(root, QStringLiteral("addApp"))) && placed(findItem(root, QStringLiteral("addFile"))));
            ready = true;
        }();
        return ready ? right : nullptr;
    }

    // The file chooser's window on screen (Ledgewise's chooser program), if any.
    static QString openChooser()
    {
        return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                           QStringLiteral("^Choose (an app|a file) to pin in Ledgewise\\.$") })
            .section(QLatin1Char('\n'), 0, 0);
    }

    // What the running chooser program was asked: its command line, one argument a line.
    static QStringList chooserRequest()
    {
        QProcess pgrep;
        pgrep.start(QStringLiteral("pgrep"),
            { QStringLiteral("-n"), QStringLiteral("-f"), QStringLiteral("ledgewise-file-chooser") });
        pgrep.waitForFinished(5000);
        QFile cmdline(
            QStringLiteral("/proc/%1/cmdline").arg(QString::fromUtf8(pgrep.readAllStandardOutput()).trimmed()));
        if (!cmdline.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(cmdline.readAll()).split(QLatin1Char('\0'), Qt::SkipEmptyParts).mid(1);
    }

    // Types `path` into the chooser's file name field (Alt+N, its label's mnemonic,
    // takes the keys there wherever the clicks inside left them) and presses Return
    // (again, once its completion list has taken the first).
    void answerChooser(const QString &window, const QString &path)
    {
        xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("alt+n") });
        xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("ctrl+a"),
            QStringLiteral("BackSpace") });
        xdotool({ QStringLiteral("type"), QStringLiteral("--window"), window, path });
        for (int attempt = 0; attempt < 3 && !openChooser().isEmpty(); ++attempt) {
            xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("Return") });
            if (QTest::qWaitFor([] { return openChooser().isEmpty(); }, 3000))
                break;
        }
    }

    NotchWindowController *surface(NotchSide side) const
    {
        for (const auto &controller : m_model->notchController()->controllers()) {
            if (controller->side() == side)
                return controller.get();
        }
        return nullptr;
    }

    std::unique_ptr<AppModel> m_model;
    QString m_home;
};

QTEST_MAIN(TestPanelsEndToEnd)
#include "test_panels_end_to_end.moc"
