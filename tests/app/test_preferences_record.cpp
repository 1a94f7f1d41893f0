// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"

#include <QTest>

using namespace ledgewise;

class TestPreferencesRecord : public QObject
{
    Q_OBJECT

private slots:
    void defaultsHaveEveryFieldAsShipped()
    {
        const Preferences &p = Preferences::defaults();
        QCOMPARE(p.placement, NotchPlacement::both);
        QCOMPARE(p.animateInterface, true);
        QCOMPARE(p.showOnExternalMonitors, true);
        QCOMPARE(p.automaticallyHide, false);
        QCOMPARE(p.launchAtLogin, false);
        QCOMPARE(p.style, NotchStyle::pill);
        QCOMPARE(p.width, 268.0);
        QCOMPARE(p.height, 340.0);
        QCOMPARE(p.cornerRadius, 14.0);
        QCOMPARE(p.opacity, 1.0);
        QCOMPARE(p.spacing, 8.0);
        QCOMPARE(p.animationSpeed, 1.0);
        QCOMPARE(p.leftModuleIDs, QList<ModuleID>({ ModuleID::clipboard, ModuleID::downloads, ModuleID::timer }));
        QCOMPARE(p.rightModuleIDs, QList<ModuleID>({ ModuleID::launcher }));
        QCOMPARE(p.hasCompletedOnboarding, false);
        QCOMPARE(p.offsetFromNotch, 8.0);
        QCOMPARE(p.offsetFromEdge, 80.0);
        QVERIFY(p.launcherItems.isEmpty());
        QCOMPARE(&Preferences::defaults(), &p);
    }

    void placementCasesRawValuesAndTitles()
    {
        QStringList raws, titles;
        for (NotchPlacement placement : allNotchPlacements) {
            raws << rawValue(placement);
            titles << title(placement);
            QCOMPARE(notchPlacementFromRaw(rawValue(placement)), placement);
        }
        QCOMPARE(raws, QStringList({ "left", "right", "both" }));
        QCOMPARE(titles, QStringList({ "Left", "Right", "Both" }));
        QCOMPARE(notchPlacementFromRaw(QStringLiteral("Both")), std::nullopt);
        QCOMPARE(notchPlacementFromRaw(QString()), std::nullopt);
    }

    void styleCasesRawValuesAndTitles()
    {
        QStringList raws, titles;
        for (NotchStyle style : allNotchStyles) {
            raws << rawValue(style);
            titles << title(style);
            QCOMPARE(notchStyleFromRaw(rawValue(style)), style);
        }
        QCOMPARE(raws, QStringList({ "classic", "pill", "minimal" }));
        QCOMPARE(titles, QStringList({ "Classic", "Pill", "Minimal" }));
        QCOMPARE(notchStyleFromRaw(QStringLiteral("rounded")), std::nullopt);
    }

    void moduleIdentitiesInCaseOrder()
    {
        QStringList raws, titles, symbols;
        for (ModuleID id : allModuleIDs) {
            raws << rawValue(id);
            titles << title(id);
            symbols << systemImage(id);
        }
        QCOMPARE(raws,
            QStringList({ "clipboard", "downloads", "timer", "launcher", "calendar", "nowPlaying", "systemStatus" }));
        QCOMPARE(titles,
            QStringList({ "Clipboard", "Downloads", "Timer", "Launcher", "Calendar", "Now Playing", "System" }));
        QCOMPARE(symbols,
            QStringList({ "clipboard", "arrow.down.circle", "timer", "square.grid.2x2", "calendar", "playpause",
                "chart.bar" }));
    }

    void moduleRawValuesMatchExactly()
    {
        QCOMPARE(moduleIDFromRaw(QStringLiteral("Clipboard")), std::nullopt);
        QCOMPARE(moduleIDFromRaw(QStringLiteral("nowPlaying")), ModuleID::nowPlaying);
        QCOMPARE(moduleIDFromRaw(QStringLiteral("now playing")), std::nullopt);
        QCOMPARE(moduleIDFromRaw(QStringLiteral("nowplaying")), std::nullopt);
        QCOMPARE(moduleIDFromRaw(QStringLiteral("systemStatus")), ModuleID::systemStatus);
    }

    void launcherKindsStoredAsText()
    {
        QCOMPARE(rawValue(LauncherItem::Kind::application), QStringLiteral("application"));
        QCOMPARE(rawValue(LauncherItem::Kind::file), QStringLiteral("file"));
        QCOMPARE(rawValue(LauncherItem::Kind::website), QStringLiteral("website"));
        QCOMPARE(launcherKindFromRaw(QStringLiteral("app")), std::nullopt);
    }

    void equalityComparesEveryField()
    {
        Preferences a, b;
        QVERIFY(a == b);
        b.offsetFromEdge = 80.000001;
        QVERIFY(!(a == b));
        b = a;
        b.rightModuleIDs.append(ModuleID::launcher);
        QVERIFY(!(a == b));
        b = a;
        LauncherItem item { QUuid::createUuid(), QStringLiteral("Site"), LauncherItem::Kind::website, std::nullopt,
            QStringLiteral("https://example.org") };
        a.launcherItems = { item };
        b.launcherItems = { item };
        QVERIFY(a == b);
        b.launcherItems[0].urlString = QStringLiteral("https://example.com");
        QVERIFY(!(a == b));
    }
};

QTEST_GUILESS_MAIN(TestPreferencesRecord)
#include "test_preferences_record.moc"
