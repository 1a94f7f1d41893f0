#include "app/preferences_codec.h"
#include "app/preferences_store.h"
#include "platform/settings/qsettings_store.h"
#include "tests/support/fake_key_value_store.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace ledgewise;

namespace {

const QString key = QStringLiteral("ledgewise.preferences");

// What the settings file on disk holds under the preferences key, read afresh.
QVariant storedOnDisk(const QString &fileName)
{
    QSettings file(fileName, QSettings::IniFormat);
    return file.value(key);
}

Preferences decodedOnDisk(const QString &fileName)
{
    const QVariant stored = storedOnDisk(fileName);
    if (stored.typeId() != QMetaType::QByteArray)
        return {};
    return decodePreferences(stored.toByteArray()).value_or(Preferences{});
}

} // namespace

class TestPreferencesStore : public QObject
{
    Q_OBJECT

private slots:
    void firstStartUsesDefaultsAndWritesNothing()
    {
        QSettingsStore settings;
        QVERIFY(settings.fileName().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")));
        QVERIFY(settings.fileName().endsWith(QStringLiteral("Ledgewise/Ledgewise.conf")));
        PreferencesStore store(settings);
        QVERIFY(store.current() == Preferences::defaults());
        settings.sync();
        QVERIFY(!settings.contains(key));
        QVERIFY(!storedOnDisk(settings.fileName()).isValid());
    }

    void constructionNeitherWritesNorAnnounces()
    {
        FakeKeyValueStore settings;
        settings.setValue(key, encodePreferences(Preferences::defaults()).value());
        settings.writes = 0;
        PreferencesStore store(settings);
        QCOMPARE(settings.writes, 0);
    }

    void wholeRecordChangeIsWrittenToDiskAndAnnounced()
    {
        QSettingsStore settings;
        PreferencesStore store(settings);
        QSignalSpy observed(&store, &PreferencesStore::currentChanged);
        QSignalSpy announced(&store, &PreferencesStore::preferencesDidChange);

        Preferences changed = store.current();
        changed.style = NotchStyle::minimal;
        changed.leftModuleIDs = {ModuleID::timer};
        store.setCurrent(changed);
        settings.sync();

        QCOMPARE(observed.count(), 1);
        QCOMPARE(announced.count(), 1);
        QCOMPARE(storedOnDisk(settings.fileName()).typeId(), QMetaType::QByteArray);
        QVERIFY(decodedOnDisk(settings.fileName()) == changed);
    }

    void equalRecordIsWrittenAndAnnouncedWithoutObserverUpdate()
    {
        FakeKeyValueStore settings;
        PreferencesStore store(settings);
        QSignalSpy observed(&store, &PreferencesStore::currentChanged);
        QSignalSpy announced(&store, &PreferencesStore::preferencesDidChange);

        store.setCurrent(store.current());

        QCOMPARE(settings.writes, 1);
        QCOMPARE(announced.count(), 1);
        QCOMPARE(observed.count(), 0);
        QCOMPARE(settings.value(key).toByteArray(), encodePreferences(Preferences::defaults()).value());

        // On disk: the file that held nothing now holds the default document.
        QSettingsStore file;
        file.remove(key);
        file.sync();
        QVERIFY(!storedOnDisk(file.fileName()).isValid());
        PreferencesStore onDisk(file);
        QSignalSpy fileObserved(&onDisk, &PreferencesStore::currentChanged);
        onDisk.setCurrent(onDisk.current());
        file.sync();
        QCOMPARE(fileObserved.count(), 0);
        QCOMPARE(storedOnDisk(file.fileName()).toByteArray(), encodePreferences(Preferences::defaults()).value());
    }

    void inPlaceChangeWritesOnceAndAnnouncesOnce()
    {
        QSettingsStore settings;
        PreferencesStore store(settings);
        QSignalSpy observed(&store, &PreferencesStore::currentChanged);
        QSignalSpy announced(&store, &PreferencesStore::preferencesDidChange);

        store.update([](Preferences &p) { p.hasCompletedOnboarding = true; });
        settings.sync();

        QCOMPARE(observed.count(), 1);
        QCOMPARE(announced.count(), 1);
        QVERIFY(store.current().hasCompletedOnboarding);
        QVERIFY(decodedOnDisk(settings.fileName()).hasCompletedOnboarding);

        FakeKeyValueStore counting;
        PreferencesStore counted(counting);
        counted.update([](Preferences &p) {
            p.launcherItems.append({QUuid::createUuid(), QStringLiteral("example.org"), LauncherItem::Kind::website,
                                    std::nullopt, QStringLiteral("https://example.org")});
        });
        QCOMPARE(counting.writes, 1);
    }

    void announcementCarriesTheStoreWithTheNewRecord()
    {
        FakeKeyValueStore settings;
        PreferencesStore store(settings);
        double seenWidth = 0;
        PreferencesStore *seenStore = nullptr;
        connect(&store, &PreferencesStore::preferencesDidChange, this, [&](PreferencesStore *object) {
            seenStore = object;
            seenWidth = object->current().width;
        });
        store.update([](Preferences &p) { p.width = 312; });
        QCOMPARE(seenStore, &store);
        QCOMPARE(seenWidth, 312.0);
        QCOMPARE(QByteArray(ledgewisePreferencesDidChange), QByteArray("Ledgewise.preferencesDidChange"));
    }

    void savedRecordIsLoadedAtTheNextStart()
    {
        Preferences changed;
        changed.placement = NotchPlacement::right;
        changed.offsetFromNotch = 12.5;
        {
            QSettingsStore settings;
            PreferencesStore store(settings);
            store.setCurrent(changed);
        } // QSettings writes its file when it goes away
        QSettingsStore settings;
        PreferencesStore store(settings);
        QVERIFY(store.current() == changed);
    }

    void documentLackingOneKeyGivesAllDefaultsAndIsOverwrittenByTheNextChange()
    {
        QSettingsStore settings;
        QByteArray outdated = encodePreferences([] {
                                  Preferences p;
                                  p.width = 400;
                                  p.style = NotchStyle::classic;
                                  return p;
                              }())
                                  .value();
        outdated.replace(",\"offsetFromEdge\":80", "");
        settings.setValue(key, outdated);
        settings.sync();

        PreferencesStore store(settings);
        QVERIFY(store.current() == Preferences::defaults());
        settings.sync();
        QCOMPARE(storedOnDisk(settings.fileName()).toByteArray(), outdated); // left as it is

        store.update([](Preferences &p) { p.spacing = 10; });
        settings.sync();
        Preferences expected;
        expected.spacing = 10;
        QVERIFY(decodedOnDisk(settings.fileName()) == expected);
    }

    void valueOfAnotherTypeGivesDefaults_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("text holding valid json")
            << QVariant(QString::fromUtf8(encodePreferences(Preferences::defaults()).value()));
        QTest::newRow("number") << QVariant(42);
        QTest::newRow("list") << QVariant(QStringList{QStringLiteral("a")});
        QTest::newRow("garbage bytes") << QVariant(QByteArray("\x01\x02garbage", 9));
    }
    void valueOfAnotherTypeGivesDefaults()
    {
        QFETCH(QVariant, stored);
        QSettingsStore settings;
        settings.setValue(key, stored);
        settings.sync();
        QSettingsStore reopened;
        PreferencesStore store(reopened);
        QVERIFY(store.current() == Preferences::defaults());
    }

    void brokenFileOnDiskGivesDefaults()
    {
        {
            QSettingsStore settings;
            settings.setValue(QStringLiteral("other"), 1);
        }
        const QString fileName = QSettingsStore().fileName();
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::Append));
        file.write("\nledgewise.preferences=@ByteArray({\"placement\":)\n\x00\xff");
        file.close();
        QSettingsStore settings;
        PreferencesStore store(settings);
        QVERIFY(store.current() == Preferences::defaults());
    }

    void recordThatCannotBeEncodedKeepsTheOldDocumentButStillAnnounces()
    {
        FakeKeyValueStore settings;
        PreferencesStore store(settings);
        store.update([](Preferences &p) { p.width = 300; });
        const QVariant before = settings.value(key);
        QSignalSpy announced(&store, &PreferencesStore::preferencesDidChange);

        store.update([](Preferences &p) { p.opacity = std::numeric_limits<double>::quiet_NaN(); });

        QCOMPARE(announced.count(), 1);
        QCOMPARE(settings.value(key), before);
        QVERIFY(std::isnan(store.current().opacity));
    }
};

QTEST_GUILESS_MAIN(TestPreferencesStore)
#include "test_preferences_store.moc"
