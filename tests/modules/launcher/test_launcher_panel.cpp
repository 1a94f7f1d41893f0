#include "modules/launcher/launcher_module.h"
#include "platform/xdg/file_chooser.h"
#include "platform/xdg/program_launcher.h"
#include "tests/modules/panel_test_support.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/recording_url_opener.h"

#include <QTemporaryDir>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

class NoChooser final : public FileChooser
{
public:
    QString chooseFile(const QString &, const QString &, const QString &) override { return answer; }
    QString answer;
};

class NoLauncher final : public ProgramLauncher
{
public:
    bool launch(const ProgramCommand &) override { return false; }
};

struct Fixture {
    Fixture() : store(settings), module(store, chooser, opener, launcher), panel(module) {}
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
        QCOMPARE(f.opener.opened, QList<QUrl>({QUrl(QStringLiteral("https://one.example"))}));
        HostedPanel::press(f.panel.item(QStringLiteral("removeButton"), f.row(0)));
        QTRY_COMPARE(f.store.current().launcherItems.size(), 1);
        QCOMPARE(f.store.current().launcherItems[0].title, QStringLiteral("two.example"));
        QCOMPARE(f.opener.opened.size(), 1);
    }

    void removingAnEntryRemovesEveryEntryWithItsId()
    {
        Fixture f;
        const LauncherItem shared{QUuid::createUuid(), QStringLiteral("twice"), LauncherItem::Kind::website, std::nullopt,
                                  QStringLiteral("https://twice.example")};
        f.store.update([&shared](Preferences &p) {
            p.launcherItems = {shared, {QUuid::createUuid(), QStringLiteral("other"), LauncherItem::Kind::website,
                                        std::nullopt, QStringLiteral("https://other.example")},
                               shared};
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
        QCOMPARE(f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("doc"));
        f.chooser.answer.clear(); // cancelled
        HostedPanel::press(f.panel.item(QStringLiteral("addApp")));
        QCOMPARE(f.store.current().launcherItems.size(), 1);
    }
};

QTEST_MAIN(TestLauncherPanel)
#include "test_launcher_panel.moc"
