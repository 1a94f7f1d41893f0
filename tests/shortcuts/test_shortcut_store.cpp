// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/settings/qsettings_store.h"
#include "shortcuts/application_shortcuts.h"
#include "shortcuts/shortcut_store.h"
#include "tests/support/fake_key_value_store.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::GlobalShortcuts;

namespace {

// Records what the store asks of the hot-key side.
class RecordingRegistrar final : public HotKeyRegistrar
{
public:
    void registerShortcut(const Name &name, const Shortcut &shortcut) override
    {
        log << QStringLiteral("register %1 %2").arg(name.rawValue).arg(shortcut.carbonKeyCode);
    }
    void unregisterShortcut(const Shortcut &shortcut) override
    {
        log << QStringLiteral("unregister %1").arg(shortcut.carbonKeyCode);
    }
    bool hasHandlers(const Name &name) const override { return handled.contains(name.rawValue); }

    QStringList handled;
    QStringList log;
};

const Name withDefault { QStringLiteral("toggleLeft"), Shortcut(Key::space, optionFlag) };
const Name withoutDefault { QStringLiteral("clipboardHistory"), std::nullopt };

QVariant onDisk(const QString &fileName, const QString &key)
{
    return QSettings(fileName, QSettings::NativeFormat).value(key);
}

} // namespace

class TestShortcutStore : public QObject
{
    Q_OBJECT

private slots:
    // Each case starts from an empty settings file.
    void init()
    {
        QSettings file(QSettingsStore().fileName(), QSettings::NativeFormat);
        file.clear();
        file.sync();
    }

    void freshInstallationStoresTheDefaultOnce()
    {
        FakeKeyValueStore settings;
        Store store(settings);
        store.declare(withDefault);
        QCOMPARE(settings.writes, 1);
        QCOMPARE(settings.value(QStringLiteral("GlobalShortcuts_toggleLeft")).toString(),
            QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2048})"));
        QCOMPARE(store.getShortcut(withDefault), Shortcut(49, 2048));

        store.declare(withDefault);
        QCOMPARE(settings.writes, 1);
    }

    void laterLaunchKeepsTheUsersChange()
    {
        QSettingsStore settings;
        {
            Store store(settings);
            store.declare(withDefault);
            store.setShortcut(Shortcut(Key::l, commandFlag | shiftFlag), withDefault);
        }
        settings.sync();
        QSettingsStore relaunched;
        Store store(relaunched);
        store.declare(withDefault);
        QCOMPARE(store.getShortcut(withDefault), Shortcut(37, 768));
        relaunched.sync();
        QCOMPARE(onDisk(relaunched.fileName(), QStringLiteral("GlobalShortcuts_toggleLeft")).toString(),
            QStringLiteral(R"({"carbonKeyCode":37,"carbonModifiers":768})"));
    }

    void clearedShortcutStaysClearedAcrossLaunches()
    {
        QSettingsStore settings;
        {
            Store store(settings);
            store.declare(withDefault);
            store.setShortcut(std::nullopt, withDefault);
            QCOMPARE(store.getShortcut(withDefault), std::nullopt);
        }
        settings.sync();
        // The settings file holds false, which a later launch must not replace.
        QCOMPARE(onDisk(settings.fileName(), QStringLiteral("GlobalShortcuts_toggleLeft")).toString(),
            QStringLiteral("false"));
        QSettingsStore relaunched;
        RecordingRegistrar registrar;
        registrar.handled << QStringLiteral("toggleLeft");
        Store store(relaunched);
        store.setRegistrar(&registrar);
        store.declare(withDefault);
        QCOMPARE(store.getShortcut(withDefault), std::nullopt);
        QVERIFY(registrar.log.isEmpty()); // no hot key for a cleared name
    }

    void clearingANameWithoutDefaultRemovesItsKey()
    {
        FakeKeyValueStore settings;
        Store store(settings);
        store.declare(withoutDefault);
        QVERIFY(!settings.contains(QStringLiteral("GlobalShortcuts_clipboardHistory")));
        store.setShortcut(Shortcut(Key::v, commandFlag | shiftFlag), withoutDefault);
        QVERIFY(settings.contains(QStringLiteral("GlobalShortcuts_clipboardHistory")));
        store.setShortcut(std::nullopt, withoutDefault);
        QVERIFY(!settings.contains(QStringLiteral("GlobalShortcuts_clipboardHistory")));
        QCOMPARE(settings.removals, 1);
    }

    void storedFalseMeansNoShortcutAndNoHotKey()
    {
        FakeKeyValueStore settings;
        settings.setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), false);
        RecordingRegistrar registrar;
        registrar.handled << QStringLiteral("toggleLeft");
        Store store(settings);
        store.setRegistrar(&registrar);
        store.declare(withDefault);
        QCOMPARE(store.getShortcut(withDefault), std::nullopt);
        QVERIFY(registrar.log.isEmpty());
    }

    void undecodableStoredValuesAreNoShortcut_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("garbage text") << QVariant(QStringLiteral("{{{"));
        QTest::newRow("bytes") << QVariant(QByteArray(R"({"carbonKeyCode":37,"carbonModifiers":768})"));
        QTest::newRow("number") << QVariant(37);
        QTest::newRow("true") << QVariant(true);
        QTest::newRow("list") << QVariant(QStringList { QStringLiteral("37"), QStringLiteral("768") });
    }
    void undecodableStoredValuesAreNoShortcut()
    {
        QFETCH(QVariant, stored);
        FakeKeyValueStore settings;
        settings.setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), stored);
        Store store(settings);
        store.declare(withDefault);
        QCOMPARE(store.getShortcut(withDefault), std::nullopt);
        // Not repaired either.
        QCOMPARE(settings.value(QStringLiteral("GlobalShortcuts_toggleLeft")), stored);
    }

    void everyChangeIsAnnouncedWithTheName()
    {
        FakeKeyValueStore settings;
        Store store(settings);
        QSignalSpy changes(&store, &Store::shortcutDidChange);
        store.declare(withDefault); // set (the default)
        store.setShortcut(Shortcut(Key::k, 256), withDefault); // set
        store.setShortcut(std::nullopt, withDefault); // disable
        store.setShortcut(std::nullopt, withoutDefault); // remove
        QCOMPARE(changes.count(), 4);
        QCOMPARE(changes.at(0).at(0).value<Name>().rawValue, QStringLiteral("toggleLeft"));
        QCOMPARE(changes.at(0).at(0).value<Name>().defaultShortcut, withDefault.defaultShortcut);
        QCOMPARE(changes.at(3).at(0).value<Name>(), withoutDefault);
        QCOMPARE(qHash(withDefault), qHash(Name { QStringLiteral("toggleLeft"), std::nullopt }));
    }

    void hotKeysFollowTheStoredShortcut()
    {
        FakeKeyValueStore settings;
        RecordingRegistrar registrar;
        registrar.handled << QStringLiteral("toggleLeft");
        Store store(settings);
        store.setRegistrar(&registrar);
        store.declare(withDefault);
        store.setShortcut(Shortcut(Key::k, 256), withDefault);
        store.setShortcut(std::nullopt, withDefault);
        store.setShortcut(Shortcut(Key::v, 256), withoutDefault); // no handlers: not registered
        QCOMPARE(registrar.log,
            QStringList({ "register toggleLeft 49", "unregister 49", "register toggleLeft 40", "unregister 40" }));
    }

    void resetGivesBackTheDefaults()
    {
        FakeKeyValueStore settings;
        Store store(settings);
        store.declare(withDefault);
        store.declare(withoutDefault);
        store.setShortcut(Shortcut(Key::k, 256), withDefault);
        store.setShortcut(Shortcut(Key::j, 256), withoutDefault);
        store.reset(withDefault);
        QCOMPARE(store.getShortcut(withDefault), withDefault.defaultShortcut);
        store.setShortcut(std::nullopt, withDefault);
        store.resetAll();
        QCOMPARE(store.getShortcut(withDefault), withDefault.defaultShortcut);
        QCOMPARE(store.getShortcut(withoutDefault), std::nullopt);
        QVERIFY(!settings.contains(QStringLiteral("GlobalShortcuts_clipboardHistory")));
    }

    void applicationShortcutsAreCreatedWithTheirDefaults()
    {
        QSettingsStore settings;
        Store store(settings);
        ApplicationShortcuts::declareAll(store);
        settings.sync();
        QCOMPARE(onDisk(settings.fileName(), QStringLiteral("GlobalShortcuts_toggleLeft")).toString(),
            QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2048})"));
        QCOMPARE(onDisk(settings.fileName(), QStringLiteral("GlobalShortcuts_toggleRight")).toString(),
            QStringLiteral(R"({"carbonKeyCode":49,"carbonModifiers":2560})"));
        QCOMPARE(store.names().size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestShortcutStore)
#include "test_shortcut_store.moc"
