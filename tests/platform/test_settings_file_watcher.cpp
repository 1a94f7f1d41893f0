// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/settings/qsettings_store.h"
#include "platform/settings/settings_file_watcher.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;

class TestSettingsFileWatcher : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QFile::remove(QSettingsStore().fileName());
        // The file exists before the watch starts, as it does after a first start.
        QSettingsStore().setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), QStringLiteral("first"));
    }

    void anEditByAnotherProgramIsToldOnce()
    {
        QSettingsStore store;
        SettingsFileWatcher watcher(store.fileName());
        QSignalSpy changed(&watcher, &SettingsFileWatcher::changed);
        // As Ledgewise listens: read the file again, which sets its mode again.
        connect(&watcher, &SettingsFileWatcher::changed, this, [&store] { store.sync(); });

        QSettings(store.fileName(), QSettings::NativeFormat)
            .setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), QStringLiteral("second"));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(store.value(QStringLiteral("GlobalShortcuts_toggleLeft")).toString(), QStringLiteral("second"));
        // Reading it back must not look like another edit: that would go round for ever.
        QTest::qWait(300);
        QCOMPARE(changed.count(), 1);
    }

    void onlyTheFilesModeSetAgainIsNoChange()
    {
        QSettingsStore store;
        SettingsFileWatcher watcher(store.fileName());
        QSignalSpy changed(&watcher, &SettingsFileWatcher::changed);
        QFile::setPermissions(store.fileName(), QFile::ReadOwner | QFile::WriteOwner);
        QTest::qWait(300);
        QCOMPARE(changed.count(), 0);
        // An edit after it is still told.
        QSettings(store.fileName(), QSettings::NativeFormat)
            .setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), QStringLiteral("third"));
        QTRY_COMPARE(changed.count(), 1);
    }

    void aFileMadeAfterTheWatchStartedIsTold()
    {
        QFile::remove(QSettingsStore().fileName());
        QSettingsStore store;
        SettingsFileWatcher watcher(store.fileName());
        QSignalSpy changed(&watcher, &SettingsFileWatcher::changed);
        QSettings(store.fileName(), QSettings::NativeFormat)
            .setValue(QStringLiteral("GlobalShortcuts_toggleLeft"), QStringLiteral("new"));
        QTRY_VERIFY(changed.count() >= 1);
    }
};

QTEST_GUILESS_MAIN(TestSettingsFileWatcher)
#include "test_settings_file_watcher.moc"
