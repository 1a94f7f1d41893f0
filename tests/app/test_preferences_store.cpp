// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences_codec.h"
#include "app/preferences_store.h"
#include "platform/settings/qsettings_store.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/test_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

using namespace ledgewise;
using namespace ledgewise::testing;

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
    return decodePreferences(stored.toByteArray()).value_or(Preferences {});
}

constexpr QFileDevice::Permissions everyone = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
    | QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup | QFileDevice::ReadOther
    | QFileDevice::WriteOther | QFileDevice::ExeOther;

// The mode bits as `ls` shows them (without the current user's view of them).
QFileDevice::Permissions modeOf(const QString &path)
{
    return QFileInfo(path).permissions() & everyone;
}

QString settingsFolder()
{
    return QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).filePath(QStringLiteral("Ledgewise"));
}

// Starts from no settings at all.
void removeSettings()
{
    QDir(settingsFolder()).removeRecursively();
}

// Everything written to stderr while `work` runs.
template <typename Work> QByteArray stderrOf(Work work)
{
    std::fflush(stderr);
    const int saved = ::dup(STDERR_FILENO);
    FILE *capture = std::tmpfile();
    ::dup2(::fileno(capture), STDERR_FILENO);
    work();
    std::fflush(stderr);
    ::dup2(saved, STDERR_FILENO);
    ::close(saved);
    std::rewind(capture);
    QByteArray text;
    char chunk[512];
    while (const size_t n = std::fread(chunk, 1, sizeof chunk, capture))
        text.append(chunk, qsizetype(n));
    std::fclose(capture);
    return text;
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
        changed.leftModuleIDs = { ModuleID::timer };
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
            p.launcherItems.append({ QUuid::createUuid(), QStringLiteral("example.org"), LauncherItem::Kind::website,
                std::nullopt, QStringLiteral("https://example.org") });
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
        QTest::newRow("list") << QVariant(QStringList { QStringLiteral("a") });
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

    void settingsFolderAndFileAreTheOwnersOnly()
    {
        removeSettings();
        // A folder left by an earlier version with the usual mode is tightened too.
        QVERIFY(QDir().mkpath(settingsFolder()));
        QVERIFY(
            QFile::setPermissions(settingsFolder(), everyone & ~(QFileDevice::WriteGroup | QFileDevice::WriteOther)));
        const mode_t previousMask = ::umask(022);
        {
            QSettingsStore settings;
            PreferencesStore store(settings);
            store.update([](Preferences &p) { p.width = 420; });
            QCOMPARE(
                modeOf(settingsFolder()), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            QCOMPARE(modeOf(settings.fileName()), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            // Every later write replaces the file: it stays private.
            store.update([](Preferences &p) { p.width = 430; });
            QCOMPARE(modeOf(settings.fileName()), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            QCOMPARE(decodedOnDisk(settings.fileName()).width, 430.0);
        }
        ::umask(previousMask);
    }

    void undecodableRecordIsKeptOnceBeforeTheFirstChange()
    {
        removeSettings();
        const QByteArray broken("{\"placement\":\"both\", \"width\": \"wide\"}");
        {
            QSettingsStore settings;
            settings.setValue(key, broken);
        }
        QSettingsStore settings;
        PreferencesStore store(settings);
        const QString aside = store.setAsidePath();
        QCOMPARE(aside, QDir(settingsFolder()).filePath(QStringLiteral("preferences.unreadable.json")));
        QVERIFY(store.current() == Preferences::defaults());
        QVERIFY(!QFile::exists(aside)); // loading alone keeps everything as it was

        store.update([](Preferences &p) { p.spacing = 10; });
        QCOMPARE(readAll(aside), broken);
        QCOMPARE(modeOf(aside), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QCOMPARE(decodedOnDisk(settings.fileName()).spacing, 10.0);

        // Once: the next change does not write it again.
        QFile edited(aside);
        QVERIFY(edited.open(QIODevice::WriteOnly));
        edited.write("looked at");
        edited.close();
        store.update([](Preferences &p) { p.spacing = 12; });
        QCOMPARE(readAll(aside), QByteArray("looked at"));

        // A readable record is never set aside.
        QVERIFY(QFile::remove(aside));
        QSettingsStore reopened;
        PreferencesStore next(reopened);
        QCOMPARE(next.current().spacing, 12.0);
        next.update([](Preferences &p) { p.spacing = 14; });
        QVERIFY(!QFile::exists(aside));
    }

    void failedWriteIsReportedOnceOnStandardError()
    {
        removeSettings();
        // A folder where the file should be: no write can succeed, even for root.
        QSettingsStore probe;
        const QString fileName = probe.fileName();
        QVERIFY(QDir().mkpath(fileName));
        QSettingsStore settings;
        PreferencesStore store(settings);
        QByteArray printed = stderrOf([&] {
            store.update([](Preferences &p) { p.width = 420; });
            store.update([](Preferences &p) { p.width = 440; });
            store.setCurrent(store.current());
        });
        QVERIFY(!settings.writeFailure().isEmpty());
        const QByteArray line = QByteArray("Ledgewise could not save its settings to ") + fileName.toUtf8()
            + ": a folder is in the file's place.\n";
        QCOMPARE(printed, line);

        // Writable again: saved, and a later failure is told again.
        QVERIFY(QDir(fileName).removeRecursively());
        printed = stderrOf([&] { store.update([](Preferences &p) { p.width = 460; }); });
        QCOMPARE(printed, QByteArray());
        QCOMPARE(settings.writeFailure(), QString());
        QCOMPARE(decodedOnDisk(fileName).width, 460.0);
        QVERIFY(QFile::remove(fileName));
        QVERIFY(QDir().mkpath(fileName));
        printed = stderrOf([&] { store.update([](Preferences &p) { p.width = 480; }); });
        QCOMPARE(printed, line);
    }
};

QTEST_GUILESS_MAIN(TestPreferencesStore)
#include "test_preferences_store.moc"
