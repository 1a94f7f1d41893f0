// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_behaviour.h"

#include "dragdrop/drop_payload.h"

#include <QTest>

using namespace ledgewise;

namespace {

class FakeEnvironment final : public SurfaceEnvironment
{
public:
    bool hasApplication() const override { return application; }
    Preferences preferences() const override { return application ? prefs : Preferences::defaults(); }
    QList<ModuleGlance> modules(NotchSide side) const override
    {
        QList<ModuleGlance> result;
        for (ModuleID id : side == NotchSide::left ? prefs.leftModuleIDs : prefs.rightModuleIDs)
            result.append(glance(id));
        return result;
    }
    // A running countdown: the timer module's glance, active.
    std::optional<ModuleGlance> activeGlance() const override
    {
        if (!countdown)
            return std::nullopt;
        return ModuleGlance { QStringLiteral("timer"), *countdown, true };
    }
    // Each module's glance as the working modules give it.
    ModuleGlance glance(ModuleID id) const
    {
        if (id == ModuleID::clipboard)
            return { systemImage(id), snippet };
        if (id == ModuleID::downloads)
            return { systemImage(id), newestDownload.value_or(QStringLiteral("Downloads")) };
        return { systemImage(id), title(id) };
    }

    bool application = true;
    Preferences prefs;
    QString snippet = QStringLiteral("copied text");
    std::optional<QString> newestDownload;
    std::optional<QString> countdown;
};

class RecordingEffects final : public SurfaceEffects
{
public:
    void presentationDidChange(NotchPresentation presentation, bool animated) override
    {
        moves << QStringLiteral("%1%2").arg(rawValue(presentation), animated ? QString() : QStringLiteral(" now"));
    }
    void scheduleHide(double seconds) override { pendingHide = seconds; }
    void cancelHide() override { pendingHide.reset(); }

    QStringList moves;
    std::optional<double> pendingHide;
};

struct Surface {
    explicit Surface(NotchSide side = NotchSide::left)
        : model(side)
        , behaviour(model, environment, effects)
    { }
    NotchSurfaceModel model;
    FakeEnvironment environment;
    RecordingEffects effects;
    SurfaceBehaviour behaviour;

    NotchPresentation presentation() const { return model.presentation(); }
};

std::shared_ptr<const DropPayload> payload()
{
    auto dropped = std::make_shared<DropPayload>();
    dropped->text = DroppedText(QStringLiteral("dropped"));
    return dropped;
}

} // namespace

class TestSurfaceBehaviour : public QObject
{
    Q_OBJECT

private slots:
    void newSurfaceSleepsWithThePlaceholderGlance()
    {
        NotchSurfaceModel model(NotchSide::right);
        QCOMPARE(model.side(), NotchSide::right);
        QCOMPARE(model.presentation(), NotchPresentation::sleeping);
        QCOMPARE(model.isReceivingDrop(), false);
        QVERIFY(!model.hasDropPayload());
        QCOMPARE(model.glanceSymbol(), QStringLiteral("circle.fill"));
        QCOMPARE(model.glanceText(), QStringLiteral("Ledgewise"));
        QCOMPARE(model.activeText(), std::nullopt);
    }

    void glanceShowsTheFirstModule()
    {
        Surface s;
        s.behaviour.refreshGlance();
        QCOMPARE(s.model.glanceSymbol(), QStringLiteral("clipboard"));
        QCOMPARE(s.model.glanceText(), QStringLiteral("copied text"));

        s.environment.prefs.leftModuleIDs = { ModuleID::timer, ModuleID::clipboard };
        s.behaviour.refreshGlance();
        QCOMPARE(s.model.glanceSymbol(), QStringLiteral("timer"));
        QCOMPARE(s.model.glanceText(), QStringLiteral("Timer"));

        Surface right(NotchSide::right);
        right.behaviour.refreshGlance();
        QCOMPARE(right.model.glanceSymbol(), QStringLiteral("square.grid.2x2"));
        QCOMPARE(right.model.glanceText(), QStringLiteral("Launcher"));

        right.environment.prefs.rightModuleIDs = { ModuleID::systemStatus };
        right.behaviour.refreshGlance();
        QCOMPARE(right.model.glanceSymbol(), QStringLiteral("chart.bar"));
        QCOMPARE(right.model.glanceText(), QStringLiteral("System"));
        QVERIFY(right.effects.moves.isEmpty());
    }

    void downloadsGlanceNamesTheNewestFileOrSaysDownloads()
    {
        Surface s;
        s.environment.prefs.leftModuleIDs = { ModuleID::downloads };
        s.behaviour.refreshGlance();
        QCOMPARE(s.model.glanceSymbol(), QStringLiteral("arrow.down.circle"));
        QCOMPARE(s.model.glanceText(), QStringLiteral("Downloads"));
        s.environment.newestDownload = QStringLiteral("report.pdf");
        s.behaviour.refreshGlance();
        QCOMPARE(s.model.glanceText(), QStringLiteral("report.pdf"));
    }

    void sideWithoutModulesKeepsItsGlance()
    {
        Surface s;
        s.environment.prefs.leftModuleIDs.clear();
        s.behaviour.refreshGlance();
        QCOMPARE(s.model.glanceSymbol(), QStringLiteral("circle.fill"));
        QCOMPARE(s.model.glanceText(), QStringLiteral("Ledgewise"));
    }

    void countdownTurnsASleepingSurfaceActive()
    {
        Surface s;
        s.environment.countdown = QStringLiteral("5:00");
        s.behaviour.refreshGlance();
        QCOMPARE(s.presentation(), NotchPresentation::active);
        QCOMPARE(s.model.activeText(), QStringLiteral("5:00"));
        QCOMPARE(s.model.glanceSymbol(), QStringLiteral("timer"));
        QCOMPARE(s.model.glanceText(), QStringLiteral("5:00"));
        QCOMPARE(s.effects.moves, QStringList({ "active" }));
    }

    void glanceAndExpandedKeepTheirPresentationUntilTheyCollapse()
    {
        for (NotchPresentation open : { NotchPresentation::glance, NotchPresentation::expanded }) {
            Surface s;
            s.behaviour.setPresentation(open, true);
            s.environment.countdown = QStringLiteral("4:59");
            s.behaviour.refreshGlance();
            QCOMPARE(s.presentation(), open);
            s.behaviour.collapse();
            QCOMPARE(s.presentation(), NotchPresentation::active);
            QCOMPARE(s.model.glanceText(), QStringLiteral("4:59"));
        }
    }

    void glanceOnHoverShowsTheNewestCopyAndDownload()
    {
        Surface s;
        s.behaviour.refreshGlance();
        s.environment.snippet = QStringLiteral("copied while asleep");
        s.behaviour.handleHover(true);
        QCOMPARE(s.presentation(), NotchPresentation::glance);
        QCOMPARE(s.model.glanceText(), QStringLiteral("copied while asleep"));

        Surface downloads;
        downloads.environment.prefs.leftModuleIDs = { ModuleID::downloads };
        downloads.behaviour.refreshGlance();
        downloads.environment.newestDownload = QStringLiteral("arrived.zip");
        downloads.behaviour.handleHover(true);
        QCOMPARE(downloads.model.glanceText(), QStringLiteral("arrived.zip"));
    }

    void endOfCountdownReturnsActiveToSleeping()
    {
        Surface s;
        s.environment.countdown = QStringLiteral("0:01");
        s.behaviour.refreshGlance();
        s.environment.countdown.reset();
        s.behaviour.refreshGlance();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
        QCOMPARE(s.model.activeText(), std::nullopt);
        QCOMPARE(s.model.glanceText(), QStringLiteral("copied text"));
    }

    void collapseAfterTheCountdownEndedGoesToSleep()
    {
        Surface s;
        s.environment.countdown = QStringLiteral("0:01");
        s.behaviour.refreshGlance();
        s.behaviour.toggleExpanded();
        s.environment.countdown.reset(); // ended, no pulse yet
        s.behaviour.collapse();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);

        Surface orphan;
        orphan.environment.countdown = QStringLiteral("1:00");
        orphan.behaviour.refreshGlance();
        orphan.behaviour.toggleExpanded();
        orphan.environment.application = false;
        orphan.behaviour.collapse();
        QCOMPARE(orphan.presentation(), NotchPresentation::sleeping);
    }

    void hoverWidensToAGlanceAndLeavingStartsTheHideTimer()
    {
        Surface s;
        s.behaviour.handleHover(true);
        QCOMPARE(s.presentation(), NotchPresentation::glance);
        QCOMPARE(s.effects.pendingHide, std::nullopt);
        s.behaviour.handleHover(false);
        QCOMPARE(s.presentation(), NotchPresentation::glance); // unchanged now
        QCOMPARE(s.effects.pendingHide, 0.35);
        s.behaviour.hideDidFire();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
        QCOMPARE(s.effects.moves, QStringList({ "glance", "sleeping" }));
    }

    void automaticHidingShortensTheDelays()
    {
        Surface s;
        s.environment.prefs.automaticallyHide = true;
        s.behaviour.handleHover(true);
        s.behaviour.handleHover(false);
        QCOMPARE(s.effects.pendingHide, 0.2);

        s.behaviour.toggleExpanded();
        QCOMPARE(s.effects.pendingHide, std::nullopt);
        s.behaviour.handleHover(true);
        s.behaviour.handleHover(false);
        QCOMPARE(s.effects.pendingHide, 1.2);
        s.behaviour.hideDidFire();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
    }

    void withoutTheApplicationTheDelayIsTheLongOne()
    {
        Surface s;
        s.environment.prefs.automaticallyHide = true;
        s.environment.application = false;
        s.behaviour.handleHover(false);
        QCOMPARE(s.effects.pendingHide, 0.35);
    }

    void leavingAnExpandedSurfaceKeepsItOpenAndAClickOutsideClosesIt()
    {
        Surface s;
        s.behaviour.toggleExpanded();
        s.behaviour.handleHover(true);
        QCOMPARE(s.presentation(), NotchPresentation::expanded);
        s.behaviour.handleHover(false);
        QCOMPARE(s.effects.pendingHide, std::nullopt);
        s.behaviour.hideDidFire(); // a stray hide changes nothing either
        QCOMPARE(s.presentation(), NotchPresentation::expanded);
        s.behaviour.clickedOutside();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
        s.behaviour.clickedOutside(); // only an expanded surface reacts
        QCOMPARE(s.effects.moves, QStringList({ "expanded", "sleeping" }));
    }

    void reenteringWithinTheDelayKeepsTheSurface()
    {
        Surface s;
        s.behaviour.handleHover(true);
        s.behaviour.handleHover(false);
        s.behaviour.handleHover(true);
        QCOMPARE(s.effects.pendingHide, std::nullopt);
        s.behaviour.hideDidFire(); // the pointer is over it: no change
        QCOMPARE(s.presentation(), NotchPresentation::glance);
    }

    void activeSurfaceGlancesOnHover()
    {
        Surface s;
        s.environment.countdown = QStringLiteral("2:00");
        s.behaviour.refreshGlance();
        s.behaviour.handleHover(true);
        QCOMPARE(s.presentation(), NotchPresentation::glance);
        s.behaviour.handleHover(false);
        s.behaviour.hideDidFire();
        QCOMPARE(s.presentation(), NotchPresentation::active);
    }

    void toggleOpensAndCloses()
    {
        Surface s;
        s.behaviour.handleHover(true);
        s.behaviour.handleHover(false);
        s.behaviour.toggleExpanded();
        QCOMPARE(s.effects.pendingHide, std::nullopt); // cancelled first
        QCOMPARE(s.presentation(), NotchPresentation::expanded);
        s.behaviour.toggleExpanded();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
    }

    void dragThatLeavesWithoutDroppingLeavesTheSurfaceCollapsed()
    {
        Surface s;
        s.behaviour.dragDidEnter(payload());
        QCOMPARE(s.presentation(), NotchPresentation::expanded);
        QVERIFY(s.model.isReceivingDrop());
        QVERIFY(s.model.hasDropPayload());
        s.behaviour.dragDidExit();
        QCOMPARE(s.presentation(), NotchPresentation::sleeping);
        QVERIFY(!s.model.isReceivingDrop());
        QVERIFY(!s.model.hasDropPayload());
    }

    void dropKeepsThePayloadUntilTheSurfaceCollapses()
    {
        Surface s;
        s.behaviour.dragDidEnter(payload());
        const auto dropped = payload();
        s.behaviour.dragDidDrop(dropped);
        QCOMPARE(s.presentation(), NotchPresentation::expanded);
        QVERIFY(!s.model.isReceivingDrop());
        QCOMPARE(s.model.dropPayload(), dropped.get());
        s.behaviour.collapse();
        QVERIFY(!s.model.hasDropPayload());
    }
};

QTEST_GUILESS_MAIN(TestSurfaceBehaviour)
#include "test_surface_behaviour.moc"
