// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences_codec.h"
#include "modules/module_registry.h"
#include "modules/placeholder_modules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace ledgewise;

namespace {

// A stand-in for a working module, so the registry can be exercised with all seven
// identities before their stores exist.
class TestModule final : public LedgewiseModule
{
public:
    explicit TestModule(ModuleID id)
        : LedgewiseModule(id)
    { }
    QUrl expandedView() const override { return QUrl(QStringLiteral("qrc:/test.qml")); }
};

std::vector<std::unique_ptr<LedgewiseModule>> fullCatalog()
{
    std::vector<std::unique_ptr<LedgewiseModule>> modules;
    for (ModuleID id : { ModuleID::clipboard, ModuleID::downloads, ModuleID::timer, ModuleID::launcher })
        modules.push_back(std::make_unique<TestModule>(id));
    for (auto &placeholder : makePlaceholderModules())
        modules.push_back(std::move(placeholder));
    return modules;
}

QStringList ids(const QList<LedgewiseModule *> &modules)
{
    QStringList result;
    for (auto *module : modules)
        result << module->rawId();
    return result;
}

} // namespace

class TestModuleRegistry : public QObject
{
    Q_OBJECT

private slots:
    void oneInstancePerIdentityInCatalogOrder()
    {
        ModuleRegistry registry(fullCatalog());
        QCOMPARE(ids(registry.all()),
            QStringList({ "clipboard", "downloads", "timer", "launcher", "calendar", "nowPlaying", "systemStatus" }));
        for (ModuleID id : allModuleIDs) {
            QVERIFY(registry.module(id));
            QCOMPARE(registry.module(id)->id(), id);
            QCOMPARE(registry.module(id), registry.module(id));
        }
    }

    void secondInstanceOfAnIdentityIsDropped()
    {
        auto modules = fullCatalog();
        auto *first = modules.front().get();
        modules.push_back(std::make_unique<TestModule>(ModuleID::clipboard));
        ModuleRegistry registry(std::move(modules));
        QCOMPARE(registry.module(ModuleID::clipboard), first);
        QCOMPARE(registry.all().size(), 7);
    }

    void sideListKeepsPreferenceOrder()
    {
        ModuleRegistry registry(fullCatalog());
        Preferences preferences;
        preferences.leftModuleIDs = { ModuleID::timer, ModuleID::clipboard };
        QCOMPARE(ids(registry.modules(NotchSide::left, preferences)), QStringList({ "timer", "clipboard" }));
    }

    void emptySideListYieldsNoModules()
    {
        ModuleRegistry registry(fullCatalog());
        Preferences preferences;
        preferences.rightModuleIDs.clear();
        QVERIFY(registry.modules(NotchSide::right, preferences).isEmpty());
    }

    void storedEmptyLeftListGivesALeftSurfaceWithoutModules()
    {
        QJsonObject object = QJsonDocument::fromJson(*encodePreferences(Preferences::defaults())).object();
        object.insert(QStringLiteral("leftModuleIDs"), QJsonArray {});
        const auto decoded = decodePreferences(QJsonDocument(object).toJson(QJsonDocument::Compact));
        QVERIFY(decoded);
        ModuleRegistry registry(fullCatalog());
        QVERIFY(registry.modules(NotchSide::left, *decoded).isEmpty());
        QCOMPARE(ids(registry.modules(NotchSide::right, *decoded)), QStringList({ "launcher" }));
    }

    void identityListedTwiceYieldsItsModuleTwice()
    {
        ModuleRegistry registry(fullCatalog());
        Preferences preferences;
        preferences.rightModuleIDs = { ModuleID::launcher, ModuleID::calendar, ModuleID::launcher };
        const auto modules = registry.modules(NotchSide::right, preferences);
        QCOMPARE(ids(modules), QStringList({ "launcher", "calendar", "launcher" }));
        QCOMPARE(modules[0], modules[2]);
    }

    void defaultSidesHostTheirModules()
    {
        ModuleRegistry registry(fullCatalog());
        QCOMPARE(ids(registry.modules(NotchSide::left, Preferences::defaults())),
            QStringList({ "clipboard", "downloads", "timer" }));
        QCOMPARE(ids(registry.modules(NotchSide::right, Preferences::defaults())), QStringList({ "launcher" }));
    }

    void identityWithoutModuleIsSkipped()
    {
        ModuleRegistry registry(makePlaceholderModules());
        Preferences preferences;
        preferences.leftModuleIDs = { ModuleID::clipboard, ModuleID::systemStatus };
        QCOMPARE(ids(registry.modules(NotchSide::left, preferences)), QStringList({ "systemStatus" }));
        QCOMPARE(registry.module(ModuleID::clipboard), nullptr);
    }

    void modulesAnswerWithTheirIdentitysTitleAndSymbol()
    {
        ModuleRegistry registry(fullCatalog());
        const struct {
            ModuleID id;
            const char *title;
            const char *symbol;
        } table[] = {
            { ModuleID::clipboard, "Clipboard", "clipboard" },
            { ModuleID::downloads, "Downloads", "arrow.down.circle" },
            { ModuleID::timer, "Timer", "timer" },
            { ModuleID::launcher, "Launcher", "square.grid.2x2" },
            { ModuleID::calendar, "Calendar", "calendar" },
            { ModuleID::nowPlaying, "Now Playing", "playpause" },
            { ModuleID::systemStatus, "System", "chart.bar" },
        };
        for (const auto &row : table) {
            QCOMPARE(registry.module(row.id)->title(), QString::fromUtf8(row.title));
            QCOMPARE(registry.module(row.id)->systemImage(), QString::fromUtf8(row.symbol));
        }
    }

    void placeholdersShowComingSoonWithTheirTitle()
    {
        ModuleRegistry registry(makePlaceholderModules());
        const struct {
            ModuleID id;
            const char *title;
        } table[] = { { ModuleID::calendar, "Calendar" }, { ModuleID::nowPlaying, "Now Playing" },
            { ModuleID::systemStatus, "System" } };
        for (const auto &row : table) {
            auto *module = registry.module(row.id);
            QCOMPARE(module->expandedView(), QUrl(QStringLiteral("qrc:/qt/qml/Ledgewise/Modules/ComingSoonView.qml")));
            QCOMPARE(module->expandedViewProperties().value(QStringLiteral("title")).toString(),
                QString::fromUtf8(row.title));
        }
    }
};

QTEST_GUILESS_MAIN(TestModuleRegistry)
#include "test_module_registry.moc"
