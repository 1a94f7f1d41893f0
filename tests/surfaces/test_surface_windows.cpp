// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Real surface windows on Xvfb, driven by xdotool as a person would drive them.
#include "app/preferences_store.h"
#include "app/qml_modules.h"
#include "dragdrop/drop_payload.h"
#include "modules/module_registry.h"
#include "surfaces/notch_controller.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/quick_item_search.h"
#include "tests/surfaces/surface_test_support.h"

#include <QAccessible>
#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QProcess>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRasterWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// A dialog of Ledgewise's own: a release inside it presses its one button, which
// closes it.
class OwnDialog : public QRasterWindow
{
public:
    explicit OwnDialog(const QRect &geometry, Qt::WindowModality modality = Qt::NonModal)
    {
        setFlags(Qt::Dialog);
        setModality(modality);
        setGeometry(geometry);
        show();
    }
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (event->position().y() > height() / 2)
            hide();
    }
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::gray); }
};

} // namespace

class TestSurfaceWindows : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qunsetenv("LEDGEWISE_NOTCH");
        pointerTo(QPoint(756, 600));
        m_fixture = std::make_unique<SurfaceFixture>();
    }

    void cleanup()
    {
        screenshot(QString::fromLatin1(QTest::currentTestFunction()));
        m_fixture.reset();
    }

    void bothSurfacesSleepAtTheEdgesOfAScreenWithoutNotch()
    {
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(2));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        QTRY_COMPARE(xGeometry(right), QRect(1512 - 80 - 76, 0, 76, 28));
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::sleeping);
    }

    void surfacesHangBesideASimulatedNotch()
    {
        qputenv("LEDGEWISE_NOTCH", "200x32");
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(656 - 8 - 76, 0, 76, 28));
        QTRY_COMPARE(xGeometry(right), QRect(856 + 8, 0, 76, 28));
    }

    void placementDecidesWhichSurfacesExist()
    {
        m_fixture->context->store.update([](Preferences &p) { p.placement = NotchPlacement::right; });
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(1));
        QCOMPARE(m_fixture->controller->controllers().front()->side(), NotchSide::right);
        QTRY_VERIFY(!xGeometry(right).isEmpty());
        QVERIFY(xGeometry(left).isEmpty());
    }

    void hoverGlancesAndLeavingSleepsAgainAfterTheDelay()
    {
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        pointerTo(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 162, 30));
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::glance);
        screenshot(QStringLiteral("glance"));
        pointerTo(QPoint(756, 600));
        QTest::qWait(150); // still within the 0.35 s delay: unchanged
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::glance);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void clickExpandsAndAClickElsewhereCollapses()
    {
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        screenshot(QStringLiteral("expanded"));
        // Leaving keeps it open while automatic hiding is off.
        pointerTo(QPoint(756, 600));
        QTest::qWait(500);
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::expanded);
        // A click inside does not close it; one outside does.
        clickAt(QPoint(80 + 134, 200));
        QTest::qWait(200);
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::expanded);
        clickAt(QPoint(756, 600));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void automaticHidingClosesAnExpandedSurfaceAfterLeaving()
    {
        m_fixture->context->store.update([](Preferences &p) { p.automaticallyHide = true; });
        m_fixture->controller->rebuild(false);
        QTRY_VERIFY(!xGeometry(left).isEmpty());
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left).size(), QSize(268, 340));
        pointerTo(QPoint(756, 600));
        QTRY_COMPARE_WITH_TIMEOUT(xGeometry(left), QRect(80, 0, 76, 28), 3000);
    }

    void withoutAnimationChangesSnap()
    {
        m_fixture->context->store.update([](Preferences &p) { p.animateInterface = false; });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        surfaceLeft->behaviour().toggleExpanded();
        QCOMPARE(surfaceLeft->frameInScreen(), QRect(80, 0, 268, 340));
        QCOMPARE(surfaceLeft->window()->opacity(), 0.86);
        QTRY_COMPARE(surfaceLeft->window()->opacity(), 1.0);
    }

    void styleSizeAndOffsetChangesReshapeTheSameWindows()
    {
        m_fixture->controller->rebuild(false);
        const NotchWindowController *before = surface(NotchSide::left);
        m_fixture->context->store.update([](Preferences &p) {
            p.style = NotchStyle::classic;
            p.offsetFromEdge = 120;
        });
        QCOMPARE(surface(NotchSide::left), before);
        QTRY_COMPARE(xGeometry(left), QRect(120, 0, 84, 30));
        QTRY_COMPARE(xGeometry(right), QRect(1512 - 120 - 84, 0, 84, 30));
        QVERIFY(surface(NotchSide::left)->classicRim());

        m_fixture->context->store.update([](Preferences &p) { p.placement = NotchPlacement::left; });
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(1));
        QTRY_VERIFY(xGeometry(right).isEmpty());
    }

    void countdownTurnsSleepingSurfacesActiveAndSleepingAgainWhenItStops()
    {
        m_fixture->controller->rebuild(false);
        m_fixture->context->timer.start(300);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 124, 30));
        QCOMPARE(surface(NotchSide::right)->surface()->glanceText(), m_fixture->context->timer.remainingText());
        screenshot(QStringLiteral("active"));
        m_fixture->context->timer.cancel();
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void toggleOpensTheSurfaceOfThatSide()
    {
        m_fixture->controller->rebuild(false);
        m_fixture->controller->toggle(NotchSide::right);
        QTRY_COMPARE(xGeometry(right), QRect(1512 - 80 - 268, 0, 268, 340));
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::sleeping);
        m_fixture->controller->toggle(NotchSide::right);
        QTRY_COMPARE(xGeometry(right).size(), QSize(76, 28));
    }

    void dropShowsTheActionsAndAnActionReturnsToTheModules()
    {
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QMimeData data;
        data.setText(QStringLiteral("dropped words"));
        surfaceLeft->dragDidEnter(std::make_shared<const DropPayload>(*DropPayload::from(data)));
        QTRY_COMPARE(xGeometry(left).size(), QSize(268, 340));
        surfaceLeft->dragDidDrop(std::make_shared<const DropPayload>(*DropPayload::from(data)));
        QCOMPARE(surfaceLeft->dropSummary(), QStringLiteral("dropped words"));
        QQuickItem *actions = findItem(surfaceLeft->window()->rootObject(), QStringLiteral("dropActions"));
        QVERIFY(actions && actions->isVisible());
        QStringList titles;
        qreal lastX = -1;
        for (const char *name : { "dropAction_copy", "dropAction_save", "dropAction_share", "dropAction_open" }) {
            QQuickItem *button = findItem(actions, QString::fromLatin1(name));
            QVERIFY2(button, name);
            QVERIFY(button->x() > lastX); // one row, in this order
            lastX = button->x();
            QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
            QVERIFY(accessible);
            QCOMPARE(accessible->role(), QAccessible::Button);
            titles << accessible->text(QAccessible::Name);
        }
        QCOMPARE(titles, QStringList({ "Copy", "Save", "Share", "Open" }));
        // The row holds these four and nothing else.
        QQuickItem *row = findItem(actions, QStringLiteral("dropActionRow"));
        QVERIFY(row);
        QStringList inRow;
        for (QQuickItem *child : row->childItems()) {
            if (QAccessible::queryAccessibleInterface(child)
                && QAccessible::queryAccessibleInterface(child)->role() == QAccessible::Button)
                inRow << child->objectName();
        }
        QCOMPARE(inRow, QStringList({ "dropAction_copy", "dropAction_save", "dropAction_share", "dropAction_open" }));
        QQuickItem *airDrop = findItem(actions, QStringLiteral("dropAction_airDrop"));
        QVERIFY(airDrop);
        QCOMPARE(
            QAccessible::queryAccessibleInterface(airDrop)->text(QAccessible::Name), QStringLiteral("Send to Device"));
        QVERIFY(airDrop->mapToScene(QPointF(0, 0)).y()
            > findItem(actions, QStringLiteral("dropAction_copy"))->mapToScene(QPointF(0, 0)).y());
        screenshot(QStringLiteral("drop"));
        surfaceLeft->performDropAction(QStringLiteral("share"));
        QVERIFY(surfaceLeft->surface()->hasDropPayload()); // share keeps the item
        surfaceLeft->performDropAction(QStringLiteral("save"));
        QVERIFY(!surfaceLeft->surface()->hasDropPayload());
        QCOMPARE(m_fixture->context->performed, QStringList({ "share", "save" }));
    }

    void everyOpeningStartsThePanelsAfresh()
    {
        // Classic corners: an open pill is a capsule whose top corners, where the
        // stepper sits, are cut away.
        m_fixture->context->store.update([](Preferences &p) {
            p.leftModuleIDs = { ModuleID::timer };
            p.style = NotchStyle::classic;
        });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QQuickItem *root = surfaceLeft->window()->rootObject();
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 84, 30));
        QVERIFY(!findItem(root, QStringLiteral("customLabel"))); // no panel while closed

        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QTRY_VERIFY(findItem(root, QStringLiteral("stepUp")));
        QCOMPARE(findItem(root, QStringLiteral("customLabel"))->property("text").toString(), QStringLiteral("20 min"));
        for (int i = 0; i < 3; ++i)
            clickAt(onScreen(findItem(root, QStringLiteral("stepUp"))));
        QTRY_COMPARE(
            findItem(root, QStringLiteral("customLabel"))->property("text").toString(), QStringLiteral("23 min"));

        clickAt(QPoint(756, 600));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 84, 30));
        QTRY_VERIFY(!findItem(root, QStringLiteral("customLabel")));

        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QTRY_VERIFY(findItem(root, QStringLiteral("customLabel")));
        QCOMPARE(findItem(root, QStringLiteral("customLabel"))->property("text").toString(), QStringLiteral("20 min"));
    }

    void onlyAnOpenSurfaceCastsAShadow()
    {
        CompositorStandIn compositor;
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        QVERIFY(!shadowShown(surfaceLeft));
        pointerTo(QPoint(80 + 38, 14));
        QTRY_COMPARE(surfaceLeft->surface()->presentation(), NotchPresentation::glance);
        QVERIFY(!shadowShown(surfaceLeft));

        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QVERIFY(shadowShown(surfaceLeft));
        // Around the surface, whose own window keeps exactly its frame.
        QTRY_COMPARE(xGeometry(QStringLiteral("Ledgewise left shadow")), QRect(80 - 16, 0, 268 + 32, 340 + 16));
        // Darkest next to the surface, fading outwards.
        QQuickView *shadow = surfaceLeft->shadowWindow();
        const QImage image = shadow->grabWindow();
        QVERIFY(qAlpha(image.pixel(14, 200)) > qAlpha(image.pixel(4, 200)));
        QVERIFY(qAlpha(image.pixel(4, 200)) > 0);
        screenshot(QStringLiteral("shadow"));

        clickAt(QPoint(756, 600));
        QTRY_COMPARE(surfaceLeft->surface()->presentation(), NotchPresentation::sleeping);
        QVERIFY(!shadowShown(surfaceLeft));
        QVERIFY(!shadow->isVisible());
        QVERIFY(!findItem(shadow->rootObject(), QStringLiteral("surfaceShadow"))->isVisible());
    }

    void withoutACompositorThereIsNoShadowToDraw()
    {
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        surfaceLeft->behaviour().toggleExpanded();
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QVERIFY(!shadowShown(surfaceLeft));
    }

    void aClickInAnotherApplicationsWindowCollapses()
    {
        HelperWindow other(QRect(600, 500, 200, 150));
        QVERIFY(other.isReady());
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        clickAt(QPoint(700, 575));
        QTRY_COMPARE(other.presses(), QStringList { QStringLiteral("700 575") });
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void aClickElsewhereCollapsesWhileAnotherApplicationHoldsAGrab()
    {
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        // Like an open menu of another application: every click goes to its window.
        HelperWindow menu(QRect(600, 500, 200, 150), { QStringLiteral("--grab") });
        QVERIFY(menu.isReady());
        clickAt(QPoint(1000, 700));
        QTRY_COMPARE(menu.presses(), QStringList { QStringLiteral("1000 700") });
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void aClickInATransparentCornerReachesTheWindowBehind()
    {
        HelperWindow behind(QRect(40, 0, 140, 60));
        QVERIFY(behind.isReady());
        m_fixture->controller->rebuild(false); // mapped later, so above it
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(81, 27)); // outside the rounded corner of radius 14
        QTRY_COMPARE(behind.presses(), QStringList { QStringLiteral("81 27") });
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::sleeping);
        clickAt(QPoint(80 + 38, 14)); // inside: the surface takes it
        QTRY_COMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::expanded);
        QCOMPARE(behind.presses().size(), 1);
    }

    void aClickInOneOfOurOwnDialogsKeepsTheSurfaceOpen()
    {
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        // A dialog of ours whose button closes it when the click is released: the
        // release may be handled before the press reaches the surface's check.
        OwnDialog dialog(QRect(600, 500, 200, 150));
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        clickAt(QPoint(650, 520));
        clickAt(QPoint(700, 600)); // released on its button
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(dialog.presses, 2);
        QTest::qWait(300);
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::expanded);
        // Gone, its place is elsewhere again.
        clickAt(QPoint(700, 600));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void whileOurModalDialogIsOpenAClickInAnotherApplicationKeepsTheSurfaceOpen()
    {
        HelperWindow other(QRect(1000, 500, 200, 150));
        QVERIFY(other.isReady());
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        clickAt(QPoint(80 + 38, 14));
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        OwnDialog dialog(QRect(400, 400, 200, 150), Qt::ApplicationModal);
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        clickAt(QPoint(1100, 575));
        QTRY_COMPARE(other.presses(), QStringList { QStringLiteral("1100 575") });
        QTest::qWait(300);
        QCOMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::expanded);
        // Once the dialog is answered, the next click there closes the surface.
        dialog.close();
        QTRY_VERIFY(!QGuiApplication::modalWindow());
        clickAt(QPoint(1100, 575));
        QTRY_COMPARE(other.presses().size(), 2);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
    }

    void aClickOnTheShadowReachesTheWindowBehind()
    {
        CompositorStandIn compositor;
        HelperWindow behind(QRect(40, 100, 60, 200));
        QVERIFY(behind.isReady());
        m_fixture->controller->rebuild(false);
        surface(NotchSide::left)->behaviour().toggleExpanded();
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QTRY_COMPARE(xGeometry(QStringLiteral("Ledgewise left shadow")), QRect(64, 0, 300, 356));
        clickAt(QPoint(72, 200));
        QTRY_COMPARE(behind.presses(), QStringList { QStringLiteral("72 200") });
        QTRY_COMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::sleeping);
    }

    void cornerRadiusFollowsStyleAndPresentation()
    {
        m_fixture->context->store.update([](Preferences &p) {
            p.animateInterface = false;
            p.height = 400;
        });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        QQuickItem *fill = findItem(surfaceLeft->window()->rootObject(), QStringLiteral("surfaceFill"));
        QVERIFY(fill);
        const auto radiusIn = [&](NotchPresentation presentation) {
            surfaceLeft->behaviour().setPresentation(presentation, false);
            return fill->property("radius").toDouble();
        };
        // Pill: half the height collapsed; open, no rounder than the roundest corner the
        // settings offer, so that nothing in the panel is cut off.
        QCOMPARE(radiusIn(NotchPresentation::sleeping), 14.0);
        QCOMPARE(radiusIn(NotchPresentation::glance), 15.0);
        QCOMPARE(radiusIn(NotchPresentation::active), 15.0);
        QCOMPARE(radiusIn(NotchPresentation::expanded), 24.0);
        // Classic: the corner radius preference everywhere.
        m_fixture->context->store.update([](Preferences &p) {
            p.style = NotchStyle::classic;
            p.cornerRadius = 9;
        });
        for (NotchPresentation presentation : { NotchPresentation::sleeping, NotchPresentation::glance,
                 NotchPresentation::active, NotchPresentation::expanded })
            QCOMPARE(radiusIn(presentation), 9.0);
        // Minimal: never rounder than 10, even open at 400 high.
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::minimal; });
        for (NotchPresentation presentation : { NotchPresentation::sleeping, NotchPresentation::glance,
                 NotchPresentation::active, NotchPresentation::expanded })
            QCOMPARE(radiusIn(presentation), 10.0);
    }

    void fullOpacityFillsBlackAndLessLetsTheDesktopThrough()
    {
        m_fixture->controller->rebuild(false);
        QQuickView *window = surface(NotchSide::left)->window();
        QTRY_VERIFY(window->isExposed());
        QImage image = window->grabWindow();
        QCOMPARE(image.pixel(20, 8), qRgba(0, 0, 0, 255)); // beside the bar, inside the rounding
        m_fixture->context->store.update([](Preferences &p) { p.opacity = 0.5; });
        image = window->grabWindow();
        QVERIFY2(qAlpha(image.pixel(20, 8)) > 110 && qAlpha(image.pixel(20, 8)) < 145,
            qPrintable(QString::number(qAlpha(image.pixel(20, 8)))));
        QCOMPARE(qRed(image.pixel(20, 8)), 0);
    }

    void theRimIsClassicOnly()
    {
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::classic; });
        m_fixture->controller->rebuild(false);
        QQuickItem *rim = findItem(surface(NotchSide::left)->window()->rootObject(), QStringLiteral("classicRim"));
        QVERIFY(rim && rim->isVisible());
        QCOMPARE(rim->opacity(), 0.08);
        QCOMPARE(rim->property("border").value<QObject *>()->property("width").toInt(), 1);
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::pill; });
        QVERIFY(!rim->isVisible());
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::classic; });
        QVERIFY(rim->isVisible());
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::minimal; });
        QVERIFY(!rim->isVisible());
    }

    void aSideWithoutModulesOpensEmpty()
    {
        m_fixture->context->store.update([](Preferences &p) { p.leftModuleIDs = {}; });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        surfaceLeft->behaviour().toggleExpanded();
        QQuickItem *panel = findItem(surfaceLeft->window()->rootObject(), QStringLiteral("expandedPanel"));
        QTRY_VERIFY(panel && panel->isVisible());
        int shown = 0;
        for (QQuickItem *child : panel->childItems())
            shown += child->isVisible() && child->objectName().startsWith(QLatin1String("modulePanel_"));
        QCOMPARE(shown, 0);
        QVERIFY(!findItem(panel, QStringLiteral("dropActions"))); // made only for a drop
    }

    void theSleepingBar()
    {
        m_fixture->controller->rebuild(false);
        QQuickItem *bar = findItem(surface(NotchSide::left)->window()->rootObject(), QStringLiteral("sleepingBar"));
        QVERIFY(bar && bar->isVisible());
        QCOMPARE(QSizeF(bar->width(), bar->height()), QSizeF(18, 3));
        QCOMPARE(bar->opacity(), 0.22);
        QCOMPARE(bar->property("color").value<QColor>(), QColor::fromRgbF(0.96f, 0.95f, 0.93f));
        // Centred in the surface, to the pixel.
        const auto offCentre = [bar] { return bar->mapToScene(QPointF(9, 1.5)) - QPointF(38, 14); };
        QTRY_VERIFY(qAbs(offCentre().x()) <= 0.5 && qAbs(offCentre().y()) <= 0.5);
    }

    void everyOtherPreferenceReshapesTheSameWindowsAtOnce()
    {
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        surfaceLeft->behaviour().toggleExpanded();
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 268, 340));
        QQuickView *window = surfaceLeft->window();
        const WId id = window->winId();
        QList<QRect> seen;
        connect(window, &QWindow::widthChanged, this, [&] { seen << window->geometry(); });
        connect(window, &QWindow::heightChanged, this, [&] { seen << window->geometry(); });
        connect(window, &QWindow::xChanged, this, [&] { seen << window->geometry(); });

        const auto change = [&](const std::function<void(Preferences &)> &edit, const QRect &expected) {
            seen.clear();
            m_fixture->context->store.update(edit);
            QCOMPARE(surface(NotchSide::left), surfaceLeft);
            QCOMPARE(surfaceLeft->window(), window);
            QCOMPARE(window->winId(), id);
            QCOMPARE(surfaceLeft->frameInScreen(), expected); // at once
            QVERIFY(surfaceLeft->moveAnimation().state() != QAbstractAnimation::Running);
            for (const QRect &frame : seen)
                QCOMPARE(frame, expected); // no frame in between
        };
        change([](Preferences &p) { p.width = 300; }, QRect(80, 0, 300, 340));
        change([](Preferences &p) { p.height = 380; }, QRect(80, 0, 300, 380));
        change([](Preferences &p) { p.offsetFromEdge = 100; }, QRect(100, 0, 300, 380));
        change([](Preferences &p) { p.style = NotchStyle::classic; }, QRect(100, 0, 300, 380));
        change([](Preferences &p) { p.cornerRadius = 6; }, QRect(100, 0, 300, 380));
        QCOMPARE(surfaceLeft->pillRadius(), 6.0);
        change([](Preferences &p) { p.opacity = 0.7; }, QRect(100, 0, 300, 380));
        QCOMPARE(surfaceLeft->fillOpacity(), 0.7);
        QTRY_COMPARE(xGeometry(left), QRect(100, 0, 300, 380));

        // The placement makes new windows.
        QList<WId> before;
        for (const auto &controller : m_fixture->controller->controllers())
            before << controller->window()->winId();
        m_fixture->context->store.update([](Preferences &p) { p.placement = NotchPlacement::left; });
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(1));
        QVERIFY(!before.contains(surface(NotchSide::left)->window()->winId()));
    }

    void aHideDueAfterARebuildDoesNothing()
    {
        m_fixture->controller->rebuild(false);
        QTRY_COMPARE(xGeometry(left), QRect(80, 0, 76, 28));
        pointerTo(QPoint(80 + 38, 14));
        QTRY_COMPARE(surface(NotchSide::left)->surface()->presentation(), NotchPresentation::glance);
        pointerTo(QPoint(756, 600)); // the 0.35 s hide is now pending
        QPointer<NotchWindowController> old = surface(NotchSide::left);
        m_fixture->controller->rebuild(false);
        QVERIFY(old.isNull());
        NotchWindowController *fresh = surface(NotchSide::left);
        fresh->behaviour().setPresentation(NotchPresentation::glance, false);
        QSignalSpy changes(fresh->surface(), &NotchSurfaceModel::presentationChanged);
        QTest::qWait(600); // past the old delay: nothing happens
        QCOMPARE(changes.count(), 0);
        QCOMPARE(fresh->surface()->presentation(), NotchPresentation::glance);
    }

    void besideASimulatedNotchInEveryPresentation()
    {
        qputenv("LEDGEWISE_NOTCH", "200x32");
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        NotchWindowController *surfaceRight = surface(NotchSide::right);
        // The notch spans 656 to 856; each surface keeps 8 from it.
        const QList<std::pair<NotchPresentation, QSize>> sizes
            = { { NotchPresentation::sleeping, { 76, 28 } }, { NotchPresentation::glance, { 162, 30 } },
                  { NotchPresentation::active, { 124, 30 } }, { NotchPresentation::expanded, { 268, 340 } } };
        for (const auto &[presentation, size] : sizes) {
            surfaceLeft->behaviour().setPresentation(presentation, true);
            surfaceRight->behaviour().setPresentation(presentation, true);
            QTRY_COMPARE(xGeometry(left), QRect(QPoint(656 - 8 - size.width(), 0), size));
            QTRY_COMPARE(xGeometry(right), QRect(QPoint(856 + 8, 0), size));
            QCOMPARE(surfaceLeft->frameInScreen(), surfaceLeft->targetFrame(presentation));
            screenshot(QStringLiteral("notch-") + rawValue(presentation));
        }
    }

    void movesAndFadesFollowTheirCurves()
    {
        m_fixture->context->store.update([](Preferences &p) { p.animateInterface = false; });
        m_fixture->controller->rebuild(false);
        NotchWindowController *surfaceLeft = surface(NotchSide::left);
        surfaceLeft->behaviour().toggleExpanded();
        const QVariantAnimation &fade = surfaceLeft->fadeAnimation();
        QCOMPARE(fade.state(), QAbstractAnimation::Running);
        QCOMPARE(fade.duration(), 120);
        QCOMPARE(fade.startValue().toDouble(), 0.86);
        QCOMPARE(fade.endValue().toDouble(), 1.0);

        m_fixture->context->store.update([](Preferences &p) { p.animateInterface = true; });
        const auto durationAt = [&](double speed) {
            m_fixture->context->store.update([speed](Preferences &p) { p.animationSpeed = speed; });
            surfaceLeft->behaviour().toggleExpanded();
            return surfaceLeft->moveAnimation().duration();
        };
        QCOMPARE(durationAt(1.0), 380);
        QCOMPARE(surfaceLeft->moveAnimation().state(), QAbstractAnimation::Running);
        QCOMPARE(durationAt(0.1), 1520);
        QCOMPARE(durationAt(2.0), 190);
        const QEasingCurve curve = surfaceLeft->moveAnimation().easingCurve();
        QCOMPARE(curve.type(), QEasingCurve::BezierSpline);
        QCOMPARE(curve.toCubicSpline(), QList<QPointF>({ QPointF(0.16, 1.0), QPointF(0.3, 1.0), QPointF(1.0, 1.0) }));
        QCOMPARE(NotchWindowController::animationDurationMs(1.0, true), 120);
    }

    void animationDurations()
    {
        QCOMPARE(NotchWindowController::animationDurationMs(1.0, false), 380);
        QCOMPARE(NotchWindowController::animationDurationMs(0.1, false), 1520);
        QCOMPARE(NotchWindowController::animationDurationMs(2.0, false), 190);
        QCOMPARE(NotchWindowController::animationDurationMs(1.0, true), 120);
    }

private:
    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    static bool shadowShown(NotchWindowController *controller)
    {
        QQuickView *shadow = controller->shadowWindow();
        QQuickItem *item = shadow ? findItem(shadow->rootObject(), QStringLiteral("surfaceShadow")) : nullptr;
        return shadow && shadow->isVisible() && item && item->isVisible();
    }

    // The middle of an item, in screen coordinates.
    static QPoint onScreen(QQuickItem *item)
    {
        return item ? item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2)).toPoint() : QPoint();
    }

    std::unique_ptr<SurfaceFixture> m_fixture;
};

QTEST_MAIN(TestSurfaceWindows)
#include "test_surface_windows.moc"
