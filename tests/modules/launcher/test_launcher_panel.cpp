// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/launcher/launcher_module.h"
#include "platform/xdg/file_chooser.h"
#include "platform/xdg/program_launcher.h"
#include "tests/modules/panel_test_support.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/recording_url_opener.h"

#include <QTemporaryDir>
#include <QTimer>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// Answers on the next turn of the event loop, after the button's handler has returned.
class NoChooser final : public FileChooser
{
public:
    void chooseFile(const QString &, const QString &, const QString &, QObject *context, Answer reply) override
    {
        ++shown;
        QTimer::singleShot(0, context, [reply = std::move(reply), path = answer] { reply(path); });
    }
    bool isOpen() const override { return false; }
    QString answer;
    int shown = 0;
};

class NoLauncher final : public ProgramLauncher
{
public:
    bool launch(const ProgramCommand &) override { return false; }
};

struct Fixture {
    Fixture()
        : store(settings)
        , module(store, chooser, opener, launcher)
        , panel(module)
    { }
    QQuickItem *row(int index) const { return panel.item(QStringLiteral("launcherRow_%1").arg(index)); }
    void type(const QString &text) const { panel.item(QStringLiteral("addressField"))->setProperty("text", text); }

    FakeKeyValueStore settings;
    PreferencesStore store;
    NoChooser chooser;
    RecordingUrlOpener opener;
    NoLauncher launcher;
    LauncherModule module;
    HostedPanel panel;
};

} // namespace

class TestLauncherPanel : public QObject
{
    Q_OBJECT

private slots:
    void hintShowsUntilTheFirstEntry()
    {
        Fixture f;
        QVERIFY(f.panel.root());
        QCOMPARE(f.panel.text(QStringLiteral("launcherTitle")), QStringLiteral("Launcher"));
        QVERIFY(f.panel.visible(QStringLiteral("launcherHint")));
        QCOMPARE(f.panel.text(QStringLiteral("launcherHint")), QStringLiteral("Pin apps, files, or sites."));
        f.type(QStringLiteral(" example.org "));
        HostedPanel::press(f.panel.item(QStringLiteral("addSiteButton")));
        QTRY_VERIFY(!f.panel.visible(QStringLiteral("launcherHint")));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("example.org"));
        QCOMPARE(f.panel.item(QStringLiteral("addressField"))->property("text").toString(), QString());
        QCOMPARE(f.store.current().launcherItems.size(), 1);
        QCOMPARE(f.settings.writes, 1);
    }

    void refusedDraftStaysInTheField()
    {
        Fixture f;
        f.type(QStringLiteral("ftp://files.example.org"));
        HostedPanel::press(f.panel.item(QStringLiteral("addSiteButton")));
        QCOMPARE(f.panel.item(QStringLiteral("addressField"))->property("text").toString(),
            QStringLiteral("ftp://files.example.org"));
        QVERIFY(f.store.current().launcherItems.isEmpty());
        f.type(QString());
        HostedPanel::press(f.panel.item(QStringLiteral("addSiteButton")));
        QVERIFY(f.store.current().launcherItems.isEmpty());
    }

    void capitalSchemesAndBlankDraftsStayInTheField_data()
    {
        QTest::addColumn<QString>("draft");
        QTest::newRow("capital scheme") << QStringLiteral("HTTPS://x");
        QTest::newRow("only spaces") << QStringLiteral("    ");
    }
    void capitalSchemesAndBlankDraftsStayInTheField()
    {
        QFETCH(QString, draft);
        Fixture f;
        f.type(draft);
        HostedPanel::press(f.panel.item(QStringLiteral("addSiteButton")));
        QCOMPARE(f.panel.item(QStringLiteral("addressField"))->property("text").toString(), draft);
        QVERIFY(f.store.current().launcherItems.isEmpty());
        QVERIFY(f.panel.visible(QStringLiteral("launcherHint")));
        QCOMPARE(f.settings.writes, 0);
    }

    void rowsShowTheKindSymbolInASixteenPointColumn()
    {
        Fixture f;
        QTemporaryDir folder;
        QFile entry(folder.filePath("notes.desktop"));
        QVERIFY(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nName=Notes\nExec=true\n");
        entry.close();
        f.chooser.answer = entry.fileName();
        HostedPanel::press(f.panel.item(QStringLiteral("addApp")));
        QTRY_VERIFY(f.row(0)); // the chooser answers after the press has returned
        f.module.addWebsite(QStringLiteral("example.org"));
        QTRY_VERIFY(f.row(1));
        f.panel.settle();
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("Notes"));
        QCOMPARE(
            f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("app"));
        QCOMPARE(
            f.panel.item(QStringLiteral("rowSymbol"), f.row(1))->property("name").toString(), QStringLiteral("globe"));
        for (int i = 0; i < 2; ++i) {
            QQuickItem *icon = f.panel.item(QStringLiteral("rowIcon"), f.row(i));
            QQuickItem *title = f.panel.item(QStringLiteral("rowTitle"), f.row(i));
            QCOMPARE(icon->width(), 16.0);
            QCOMPARE(f.panel.item(QStringLiteral("rowSymbol"), f.row(i))->opacity(), 0.7);
            // The title starts after the column and the row's spacing, whatever the symbol.
            QCOMPARE(HostedPanel::sceneRect(title).left() - HostedPanel::sceneRect(f.row(i)).left(), 8.0 + 16.0 + 8.0);
        }
    }

    void rowWithATitleOnlyIsAsTallAsItsTitleAndCentresIt()
    {
        Fixture f;
        f.module.addWebsite(QStringLiteral("example.org"));
        QTRY_VERIFY(f.row(0));
        f.panel.settle();
        QQuickItem *row = f.row(0);
        QQuickItem *title = f.panel.item(QStringLiteral("rowTitle"), row);
        QVERIFY(!f.panel.item(QStringLiteral("rowSubtitle"), row)->isVisible());
        // 6 points above and below the one line, and nothing under it.
        QTRY_COMPARE(row->height(), title->height() + 12);
        const QRectF titleRect = HostedPanel::sceneRect(title);
        const QRectF rowRect = HostedPanel::sceneRect(row);
        QCOMPARE(titleRect.center().y(), rowRect.center().y());
        const QRectF symbolRect = HostedPanel::sceneRect(f.panel.item(QStringLiteral("rowSymbol"), row));
        QVERIFY(qAbs(symbolRect.center().y() - rowRect.center().y()) <= 0.5);
    }

    void partsAreSpacedAsTheSurfaceStacksThem()
    {
        // Hosted alone, the panel falls back to the surfaces' stack spacing.
        Fixture f;
        f.panel.settle();
        const auto gap = [&f](const char *upper, const char *lower) {
            return HostedPanel::sceneRect(f.panel.item(QString::fromLatin1(lower))).top()
                - HostedPanel::sceneRect(f.panel.item(QString::fromLatin1(upper))).bottom();
        };
        QCOMPARE(gap("launcherTitle", "launcherHint"), 10.0);
        QCOMPARE(gap("launcherHint", "addApp"), 10.0);
        f.module.addWebsite(QStringLiteral("example.org"));
        QTRY_VERIFY(f.row(0));
        f.panel.settle();
        QCOMPARE(gap("launcherTitle", "launcherRow_0"), 10.0);
        QCOMPARE(gap("launcherRow_0", "addApp"), 10.0);
        QCOMPARE(HostedPanel::sceneRect(f.panel.item(QStringLiteral("addFile"))).left()
                - HostedPanel::sceneRect(f.panel.item(QStringLiteral("addApp"))).right(),
            6.0);
    }

    void clickingTheRemoveSymbolRemovesWithoutOpening()
    {
        Fixture f;
        f.module.addWebsite(QStringLiteral("one.example"));
        f.module.addWebsite(QStringLiteral("two.example"));
        QTRY_VERIFY(f.row(1));
        HostedPanel::click(f.panel.item(QStringLiteral("removeButton"), f.row(0)));
        QTRY_COMPARE(f.store.current().launcherItems.size(), 1);
        QCOMPARE(f.store.current().launcherItems[0].title, QStringLiteral("two.example"));
        QVERIFY(f.opener.opened.isEmpty());
        // A click on the rest of the row opens it.
        QTRY_VERIFY(f.row(0));
        HostedPanel::click(f.panel.item(QStringLiteral("rowTitle"), f.row(0)));
        QCOMPARE(f.opener.opened, QList<QUrl>({ QUrl(QStringLiteral("https://two.example")) }));
    }

    void returnInTheFieldAddsNothing()
    {
        Fixture f;
        QQuickItem *field = f.panel.item(QStringLiteral("addressField"));
        f.type(QStringLiteral("example.org"));
        field->forceActiveFocus();
        QTest::keyClick(field->window(), Qt::Key_Return);
        QTest::keyClick(field->window(), Qt::Key_Enter);
        QVERIFY(f.store.current().launcherItems.isEmpty());
        QCOMPARE(field->property("text").toString(), QStringLiteral("example.org"));
    }

    void clickOpensAndRemoveRemovesWithoutOpening()
    {
        Fixture f;
        f.module.addWebsite(QStringLiteral("one.example"));
        f.module.addWebsite(QStringLiteral("two.example"));
        QTRY_VERIFY(f.row(1));
        HostedPanel::press(f.row(0));
        QCOMPARE(f.opener.opened, QList<QUrl>({ QUrl(QStringLiteral("https://one.example")) }));
        HostedPanel::press(f.panel.item(QStringLiteral("removeButton"), f.row(0)));
        QTRY_COMPARE(f.store.current().launcherItems.size(), 1);
        QCOMPARE(f.store.current().launcherItems[0].title, QStringLiteral("two.example"));
        QCOMPARE(f.opener.opened.size(), 1);
    }

    void removingAnEntryRemovesEveryEntryWithItsId()
    {
        Fixture f;
        const LauncherItem shared { QUuid::createUuid(), QStringLiteral("twice"), LauncherItem::Kind::website,
            std::nullopt, QStringLiteral("https://twice.example") };
        f.store.update([&shared](Preferences &p) {
            p.launcherItems = { shared,
                { QUuid::createUuid(), QStringLiteral("other"), LauncherItem::Kind::website, std::nullopt,
                    QStringLiteral("https://other.example") },
                shared };
        });
        f.module.remove(shared.id.toString(QUuid::WithoutBraces));
        QCOMPARE(f.store.current().launcherItems.size(), 1);
        QCOMPARE(f.store.current().launcherItems[0].title, QStringLiteral("other"));
    }

    void addButtonsUseTheFileChooser()
    {
        Fixture f;
        QTemporaryDir folder;
        QFile file(folder.filePath("plan.odt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        f.chooser.answer = folder.filePath("plan.odt");
        HostedPanel::press(f.panel.item(QStringLiteral("addFile")));
        QTRY_VERIFY(f.row(0));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("plan"));
        QCOMPARE(
            f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("doc"));
        f.chooser.answer.clear(); // cancelled
        HostedPanel::press(f.panel.item(QStringLiteral("addApp")));
        QCOMPARE(f.chooser.shown, 2);
        QCoreApplication::processEvents(); // its answer: cancelled
        QCOMPARE(f.store.current().launcherItems.size(), 1);
    }

    void pinnedFileReplacedSinceSaysSoUnderTheRows()
    {
        Fixture f;
        QTemporaryDir folder;
        const QString path = folder.filePath("plan.odt");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        f.chooser.answer = path;
        HostedPanel::press(f.panel.item(QStringLiteral("addFile")));
        QTRY_VERIFY(f.row(0));
        QVERIFY(!f.panel.visible(QStringLiteral("launcherNotice")));

        QFile replacement(path + ".new");
        QVERIFY(replacement.open(QIODevice::WriteOnly));
        replacement.close();
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::rename(path + ".new", path));
        HostedPanel::press(f.row(0));
        QVERIFY(f.opener.opened.isEmpty());
        QTRY_VERIFY(f.panel.visible(QStringLiteral("launcherNotice")));
        QCOMPARE(
            f.panel.text(QStringLiteral("launcherNotice")), QStringLiteral("“plan” has changed since it was pinned."));
    }
};

QTEST_MAIN(TestLauncherPanel)
#include "test_launcher_panel.moc"
