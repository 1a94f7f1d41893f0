// The panels inside real surfaces, driven with xdotool: typing a site into the
// launcher, and starting a countdown that turns the sleeping surfaces active.
#include "app/app_model.h"
#include "app/preferences_store.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/timer/timer_session.h"
#include "surfaces/notch_controller.h"
#include "tests/support/quick_item_search.h"

#include <QApplication>
#include <QClipboard>
#include <QProcess>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

void xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(10000);
}

void clickOn(QQuickItem *item)
{
    const QPointF centre = item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2));
    xdotool({QStringLiteral("mousemove"), QString::number(int(centre.x())), QString::number(int(centre.y())),
             QStringLiteral("click"), QStringLiteral("1")});
}

} // namespace

class TestPanelsEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_model = std::make_unique<AppModel>();
        m_model->start();
        m_model->prefs().setCurrent(Preferences::defaults()); // each case starts from the defaults
    }
    void cleanup() { m_model.reset(); }

    void typingASiteIntoTheLauncherPinsIt()
    {
        // Classic corners: an open pill is a capsule whose top corners, where a row's
        // remove button sits, are cut away.
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        NotchWindowController *right = surface(NotchSide::right);
        right->behaviour().toggleExpanded();
        QTRY_COMPARE(right->frameInScreen().size(), QSize(268, 340));
        QQuickItem *root = right->window()->rootObject();
        QQuickItem *field = nullptr;
        QTRY_VERIFY((field = findItem(root, QStringLiteral("addressField"))) && field->isVisible());

        clickOn(field);
        QTRY_VERIFY(field->hasActiveFocus());
        QTRY_VERIFY(right->window()->isActive());
        xdotool({QStringLiteral("type"), QStringLiteral("example.org")});
        QTRY_COMPARE(field->property("text").toString(), QStringLiteral("example.org"));
        xdotool({QStringLiteral("key"), QStringLiteral("Return")});
        QTest::qWait(200);
        QVERIFY(m_model->prefs().current().launcherItems.isEmpty()); // Return adds nothing

        clickOn(findItem(root, QStringLiteral("addSiteButton")));
        QTRY_COMPARE(m_model->prefs().current().launcherItems.size(), 1);
        QCOMPARE(m_model->prefs().current().launcherItems[0].title, QStringLiteral("example.org"));
        QCOMPARE(m_model->prefs().current().launcherItems[0].urlString, QStringLiteral("https://example.org"));
        QTRY_COMPARE(field->property("text").toString(), QString());
        QTRY_VERIFY(!findItem(root, QStringLiteral("launcherHint"))->isVisible());

        // Closing the surface gives the keyboard back.
        xdotool({QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("600"), QStringLiteral("click"), QStringLiteral("1")});
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::sleeping);
        QVERIFY(right->window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }

    void fiveMinutePresetTurnsTheSleepingSurfacesActive()
    {
        NotchWindowController *left = surface(NotchSide::left);
        left->behaviour().toggleExpanded();
        QTRY_COMPARE(left->frameInScreen().size(), QSize(268, 340));
        QQuickItem *preset = nullptr;
        QTRY_VERIFY((preset = findItem(left->window()->rootObject(), QStringLiteral("preset_5"))) && preset->isVisible());
        clickOn(preset);
        QTRY_VERIFY(m_model->timer().isRunning());
        QCOMPARE(m_model->timer().lastPresetMinutes(), 5);

        xdotool({QStringLiteral("mousemove"), QStringLiteral("700"), QStringLiteral("600"), QStringLiteral("click"), QStringLiteral("1")});
        QTRY_COMPARE(left->surface()->presentation(), NotchPresentation::active);
        NotchWindowController *right = surface(NotchSide::right);
        QTRY_COMPARE(right->surface()->presentation(), NotchPresentation::active);
        QVERIFY(left->surface()->glanceText() == QStringLiteral("5:00") || left->surface()->glanceText() == QStringLiteral("4:59"));
        QTRY_COMPARE(right->frameInScreen().size(), QSize(124, 30));
        m_model->timer().cancel();
        QTRY_COMPARE(left->surface()->presentation(), NotchPresentation::sleeping);
    }

    void copiedTextShowsInTheClipboardPanelAndAClickCopiesItBack()
    {
        // Another application copies two texts.
        for (const char *text : {"first copy", "second copy"}) {
            QProcess xclip;
            xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")});
            QVERIFY(xclip.waitForStarted());
            xclip.write(text);
            xclip.closeWriteChannel();
            QVERIFY(xclip.waitForFinished(5000));
            QTRY_VERIFY(!m_model->clipboard().items().isEmpty()
                        && m_model->clipboard().items().constFirst().text == QString::fromLatin1(text));
        }
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        NotchWindowController *left = surface(NotchSide::left);
        left->behaviour().toggleExpanded();
        QTRY_COMPARE(left->frameInScreen().size(), QSize(268, 340));
        QQuickItem *older = nullptr;
        QTRY_VERIFY((older = findItem(left->window()->rootObject(), QStringLiteral("clipboardRow_1"))) && older->isVisible());
        QCOMPARE(findItem(older, QStringLiteral("rowTitle"))->property("text").toString(), QStringLiteral("first copy"));

        clickOn(findItem(older, QStringLiteral("rowTitle")));
        // xdotool returns once the click is sent; the row copies when the click arrives.
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("first copy"));
        QProcess paste;
        QSignalSpy finished(&paste, &QProcess::finished);
        paste.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o")});
        QVERIFY(finished.wait(5000));
        QCOMPARE(paste.readAllStandardOutput(), QByteArray("first copy"));
        QCOMPARE(m_model->clipboard().items().size(), 2); // not captured again
    }

private:
    NotchWindowController *surface(NotchSide side) const
    {
        for (const auto &controller : m_model->notchController()->controllers()) {
            if (controller->side() == side)
                return controller.get();
        }
        return nullptr;
    }

    std::unique_ptr<AppModel> m_model;
};

QTEST_MAIN(TestPanelsEndToEnd)
#include "test_panels_end_to_end.moc"
