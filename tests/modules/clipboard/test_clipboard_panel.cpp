#include "modules/clipboard/clipboard_module.h"
#include "tests/modules/clipboard/clipboard_test_support.h"
#include "tests/modules/panel_test_support.h"
#include "tests/support/fake_pasteboard.h"

#include <QTemporaryDir>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

struct Fixture {
    Fixture() : store(pasteboard, folder.path(), 50, true), module(store), panel(module) {}
    void copy(const QString &text) { pasteboard.copyFromElsewhere(textData(text)); }
    QQuickItem *row(int index) const { return panel.item(QStringLiteral("clipboardRow_%1").arg(index)); }

    QTemporaryDir folder;
    FakePasteboard pasteboard;
    ClipboardStore store;
    ClipboardModule module;
    HostedPanel panel;
};

} // namespace

class TestClipboardPanel : public QObject
{
    Q_OBJECT

private slots:
    void emptyHistoryShowsOnlyTheHeaderAndTheHint()
    {
        Fixture f;
        QVERIFY(f.panel.root());
        QCOMPARE(f.panel.text(QStringLiteral("clipboardHeader")), QStringLiteral("Clipboard"));
        QVERIFY(f.panel.visible(QStringLiteral("clipboardEmpty")));
        QCOMPARE(f.panel.text(QStringLiteral("clipboardEmpty")), QStringLiteral("Copies stay on this Mac."));
        QCOMPARE(f.panel.item(QStringLiteral("clipboardEmpty"))->opacity(), 0.55);
        QVERIFY(!f.panel.visible(QStringLiteral("clipboardList")));
    }

    void rowsShowTitleKindAndButtons()
    {
        Fixture f;
        f.copy(QStringLiteral("first line\nsecond line"));
        auto *link = textData(QStringLiteral("Example"));
        link->setUrls({QUrl(QStringLiteral("https://example.org/"))});
        f.pasteboard.copyFromElsewhere(link);
        QTRY_VERIFY(f.row(1));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("https://example.org/"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Link"));
        QCOMPARE(f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("link"));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("first line second line"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(1)), QStringLiteral("Text"));
        QCOMPARE(f.panel.item(QStringLiteral("rowSymbol"), f.row(1))->property("name").toString(),
                 QStringLiteral("doc.on.clipboard"));
        QCOMPARE(HostedPanel::accessibleName(f.panel.item(QStringLiteral("deleteButton"), f.row(0))), QStringLiteral("Delete"));
    }

    void pinTogglesItsSymbolAndTheEntryStays()
    {
        Fixture f;
        f.copy(QStringLiteral("a"));
        f.copy(QStringLiteral("b"));
        QTRY_VERIFY(f.row(1));
        QQuickItem *pin = f.panel.item(QStringLiteral("pinButton"), f.row(1));
        QCOMPARE(pin->property("name").toString(), QStringLiteral("pin"));
        QCOMPARE(pin->opacity(), 0.4);
        HostedPanel::press(pin);
        QTRY_COMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->property("name").toString(), QStringLiteral("pin.fill"));
        QCOMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->opacity(), 0.9);
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("a"));
        QCOMPARE(f.pasteboard.text(), QStringLiteral("b")); // pinning copied nothing back
        HostedPanel::press(f.panel.item(QStringLiteral("pinButton"), f.row(1)));
        QTRY_COMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->opacity(), 0.4);
    }

    void clickingARowCopiesItBackWithoutCapturingIt()
    {
        Fixture f;
        f.copy(QStringLiteral("older"));
        f.copy(QStringLiteral("newer"));
        QTRY_VERIFY(f.row(1));
        HostedPanel::press(f.row(1));
        QCOMPARE(f.pasteboard.text(), QStringLiteral("older"));
        QCOMPARE(f.store.items().size(), 2);
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("newer"));
    }

    void deletingTheLastEntryBringsBackTheEmptyState()
    {
        Fixture f;
        f.copy(QStringLiteral("only"));
        QTRY_VERIFY(f.row(0));
        HostedPanel::press(f.panel.item(QStringLiteral("deleteButton"), f.row(0)));
        QTRY_VERIFY(f.panel.visible(QStringLiteral("clipboardEmpty")));
        QVERIFY(f.store.items().isEmpty());
    }

    void longHistoryScrollsWithinTwoHundredTwentyPoints()
    {
        Fixture f;
        for (int i = 0; i < 30; ++i)
            f.copy(QStringLiteral("entry %1").arg(i));
        QQuickItem *list = f.panel.item(QStringLiteral("clipboardList"));
        QTRY_VERIFY(list->property("contentHeight").toReal() > 220);
        QTRY_COMPARE(list->height(), 220.0);
    }
};

QTEST_MAIN(TestClipboardPanel)
#include "test_clipboard_panel.moc"
