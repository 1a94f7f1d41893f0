// Surfaces on two displays: a 1512 x 982 laptop panel and a 1488 x 1000 monitor to its
// right, made as RandR monitors on one Xvfb screen.
#include "app/qml_modules.h"
#include "surfaces/notch_controller.h"
#include "tests/surfaces/surface_test_support.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

class TestSurfaceDisplays : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCOMPARE(QGuiApplication::screens().size(), 2); }

    void init()
    {
        m_fixture = std::make_unique<SurfaceFixture>();
    }

    void cleanup()
    {
        m_fixture.reset();
    }

    void everyDisplayGetsSurfacesWhenExternalMonitorsAreOn()
    {
        pointerTo(QPoint(700, 500));
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
        QList<QRect> frames;
        for (const auto &controller : m_fixture->controller->controllers())
            frames << controller->frameInScreen();
        QVERIFY(frames.contains(QRect(80, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 - 80 - 76, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 + 80, 0, 76, 28)));
        QVERIFY(frames.contains(QRect(1512 + 1488 - 80 - 76, 0, 76, 28)));
    }

    void withTheSwitchOffOnlyThePrimaryAndThePointersDisplay()
    {
        m_fixture->context->store.update([](Preferences &p) { p.showOnExternalMonitors = false; });
        QScreen *primary = QGuiApplication::primaryScreen();
        QScreen *other = QGuiApplication::screens().first() == primary ? QGuiApplication::screens().last()
                                                                       : QGuiApplication::screens().first();
        pointerTo(primary->geometry().center());
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(2));
        for (const auto &controller : m_fixture->controller->controllers())
            QVERIFY(primary->geometry().contains(controller->frameInScreen()));

        pointerTo(other->geometry().center());
        m_fixture->controller->rebuild(false);
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));

        // The switch itself rebuilds.
        m_fixture->context->store.update([](Preferences &p) { p.showOnExternalMonitors = true; });
        QCOMPARE(m_fixture->controller->controllers().size(), std::size_t(4));
    }

    void toggleOpensTheSurfaceNearestThePointer()
    {
        pointerTo(QPoint(1512 + 300, 600));
        m_fixture->controller->rebuild(false);
        m_fixture->controller->toggle(NotchSide::left);
        for (const auto &controller : m_fixture->controller->controllers()) {
            const bool nearest = controller->side() == NotchSide::left && controller->display().frame.minX() == 1512;
            QCOMPARE(controller->surface()->presentation(),
                     nearest ? NotchPresentation::expanded : NotchPresentation::sleeping);
        }
    }

private:
    NotchWindowController *surface(NotchSide side) const { return m_fixture->surface(side); }

    std::unique_ptr<SurfaceFixture> m_fixture;
};

QTEST_MAIN(TestSurfaceDisplays)
#include "test_surface_displays.moc"
