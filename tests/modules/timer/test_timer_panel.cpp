// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_module.h"
#include "tests/modules/panel_test_support.h"

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// The panel hosted as an expanded surface hosts it, over a session with its own clock.
struct Panel {
    Panel()
        : session(nullptr, nullptr, [this] { return now; })
        , module(session)
        , host(module)
    { }

    QQuickItem *root() const { return host.root(); }
    QQuickItem *item(const char *name) const { return host.item(QString::fromLatin1(name)); }
    QString text(const char *name) const { return host.text(QString::fromLatin1(name)); }
    bool visible(const char *name) const { return host.visible(QString::fromLatin1(name)); }
    void press(const char *name) const { HostedPanel::press(item(name)); }

    qint64 now = 1'800'000'000'000;
    TimerSession session;
    TimerModule module;
    HostedPanel host;
};

} // namespace

class TestTimerPanel : public QObject
{
    Q_OBJECT

private slots:
    void idleLayoutOffersPresetsAndACustomValue()
    {
        Panel panel;
        QVERIFY(panel.root());
        QCOMPARE(panel.text("timerTitle"), QStringLiteral("Timer"));
        QCOMPARE(panel.item("timerTitle")->property("font").value<QFont>().pixelSize(), 12);
        QStringList labels;
        for (const char *name : { "preset_5", "preset_10", "preset_15", "preset_30" })
            labels << QAccessible::queryAccessibleInterface(panel.item(name))->text(QAccessible::Name);
        QCOMPARE(labels, QStringList({ "5m", "10m", "15m", "30m" }));
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

    void partsAreSpacedAsTheSurfaceStacksThem()
    {
        // Hosted alone, the panel falls back to the surfaces' stack spacing; the rows keep
        // their own.
        Panel panel;
        HostedPanel::settle(panel.root()->window());
        const auto rect = [&panel](const char *name) { return HostedPanel::sceneRect(panel.item(name)); };
        QCOMPARE(rect("presetRow").top() - rect("timerTitle").bottom(), 10.0);
        QCOMPARE(rect("customRow").top() - rect("presetRow").bottom(), 10.0);
        QCOMPARE(rect("preset_10").left() - rect("preset_5").right(), 6.0);
        QCOMPARE(rect("startButton").left() - rect("stepUp").right(), 8.0);
        panel.press("preset_5");
        HostedPanel::settle(panel.root()->window());
        QCOMPARE(rect("clock").top() - rect("timerTitle").bottom(), 10.0);
        QCOMPARE(rect("cancelButton").top() - rect("clock").bottom(), 10.0);
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

    void glanceIsTheClockAndActiveWhileACountdownRuns()
    {
        Panel panel;
        QCOMPARE(panel.module.glanceSymbol(), QStringLiteral("timer"));
        QCOMPARE(panel.module.glanceText(), QStringLiteral("Timer"));
        QVERIFY(!panel.module.glanceActive());
        QSignalSpy changes(&panel.module, &LedgewiseModule::glanceChanged);
        panel.session.start(300);
        QCOMPARE(panel.module.glanceText(), QStringLiteral("5:00"));
        QVERIFY(panel.module.glanceActive());
        QCOMPARE(changes.count(), 1);
        panel.session.cancel();
        QCOMPARE(panel.module.glanceText(), QStringLiteral("Timer"));
        QVERIFY(!panel.module.glanceActive());
        QCOMPARE(changes.count(), 2);
    }
};

QTEST_MAIN(TestTimerPanel)
#include "test_timer_panel.moc"
