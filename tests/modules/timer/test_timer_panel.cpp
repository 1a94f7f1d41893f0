#include "app/qml_modules.h"
#include "modules/timer/timer_module.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace ledgewise;

namespace {

QQuickItem *findItem(QQuickItem *root, const QString &name)
{
    if (!root)
        return nullptr;
    if (root->objectName() == name)
        return root;
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}

// The panel hosted in a window, as an expanded surface hosts it.
struct Panel {
    Panel()
        : session(nullptr, nullptr, [this] { return now; })
        , module(session)
    {
        addLedgewiseQmlModules(engine);
        QQmlComponent component(&engine, module.expandedView());
        root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(module.expandedViewProperties())));
        if (!root)
            qWarning("%s", qPrintable(component.errorString()));
        else
            root->setParentItem(window.contentItem());
    }

    QQuickItem *item(const char *name) const { return findItem(root.get(), QString::fromLatin1(name)); }
    QString text(const char *name) const { return item(name) ? item(name)->property("text").toString() : QString(); }
    bool visible(const char *name) const { return item(name) && item(name)->isVisible(); }
    void press(const char *name) const
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item(name));
        QVERIFY2(accessible && accessible->actionInterface(), name);
        QCOMPARE(accessible->role(), QAccessible::Button);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    qint64 now = 1'800'000'000'000;
    QQuickWindow window;
    QQmlEngine engine;
    TimerSession session;
    TimerModule module;
    std::unique_ptr<QQuickItem> root;
};

} // namespace

class TestTimerPanel : public QObject
{
    Q_OBJECT

private slots:
    void idleLayoutOffersPresetsAndACustomValue()
    {
        Panel panel;
        QVERIFY(panel.root);
        QCOMPARE(panel.text("timerTitle"), QStringLiteral("Timer"));
        QCOMPARE(panel.item("timerTitle")->property("font").value<QFont>().pixelSize(), 12);
        QStringList labels;
        for (const char *name : {"preset_5", "preset_10", "preset_15", "preset_30"})
            labels << QAccessible::queryAccessibleInterface(panel.item(name))->text(QAccessible::Name);
        QCOMPARE(labels, QStringList({"5m", "10m", "15m", "30m"}));
        QCOMPARE(panel.text("customLabel"), QStringLiteral("20 min"));
        QVERIFY(panel.visible("startButton"));
        QVERIFY(!panel.visible("clock"));
        QVERIFY(!panel.visible("cancelButton"));
    }

    void fiveMinutePresetStartsAndShowsTheClock()
    {
        Panel panel;
        panel.session.setLastPresetMinutes(30);
        panel.press("preset_5");
        QCOMPARE(panel.session.lastPresetMinutes(), 5);
        QVERIFY(panel.session.isRunning());
        QVERIFY(panel.visible("clock"));
        QCOMPARE(panel.text("clock"), QStringLiteral("5:00"));
        QCOMPARE(panel.item("clock")->property("font").value<QFont>().pixelSize(), 28);
        QVERIFY(!panel.visible("presetRow"));
        QVERIFY(!panel.visible("customRow"));
        QCOMPARE(panel.item("cancelButton")->opacity(), 0.7);
    }

    void stepperStopsAtOneAndAt180()
    {
        Panel panel;
        for (int i = 0; i < 30; ++i)
            panel.press("stepDown");
        QCOMPARE(panel.text("customLabel"), QStringLiteral("1 min"));
        for (int i = 0; i < 200; ++i)
            panel.press("stepUp");
        QCOMPARE(panel.text("customLabel"), QStringLiteral("180 min"));
        panel.press("startButton");
        QCOMPARE(panel.session.endDate(), panel.now + 10'800'000);
        QCOMPARE(panel.text("clock"), QStringLiteral("180:00"));
        QCOMPARE(panel.session.lastPresetMinutes(), 180);
    }

    void cancelReturnsToIdleAtOnceKeepingTheCustomValue()
    {
        Panel panel;
        panel.press("stepUp");
        panel.press("stepUp");
        panel.press("startButton");
        QVERIFY(panel.visible("clock"));
        panel.press("cancelButton");
        QVERIFY(!panel.session.isRunning());
        QVERIFY(panel.visible("presetRow"));
        QCOMPARE(panel.text("customLabel"), QStringLiteral("22 min"));
    }

    void moduleAnswersForTheTimerIdentity()
    {
        TimerSession session(nullptr, nullptr);
        TimerModule module(session);
        QCOMPARE(module.id(), ModuleID::timer);
        QCOMPARE(module.title(), QStringLiteral("Timer"));
        QCOMPARE(module.systemImage(), QStringLiteral("timer"));
        QCOMPARE(TimerModule::stepped(180, 1), 180);
        QCOMPARE(TimerModule::stepped(1, -1), 1);
    }
};

QTEST_MAIN(TestTimerPanel)
#include "test_timer_panel.moc"
