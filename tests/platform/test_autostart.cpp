// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/launch_at_login.h"
#include "app/preferences_store.h"
#include "platform/xdg/autostart.h"
#include "platform/xdg/autostart_entry.h"
#include "tests/support/fake_key_value_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace ledgewise;

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// desktop-file-validate's verdict: empty when it finds nothing to say.
QString validate(const QString &path)
{
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(QStringLiteral("desktop-file-validate"), { path });
    if (!validator.waitForFinished(10000))
        return QStringLiteral("desktop-file-validate did not run");
    const QString said = QString::fromUtf8(validator.readAll()).trimmed();
    return validator.exitCode() == 0 ? said : QStringLiteral("exit %1: %2").arg(validator.exitCode()).arg(said);
}

// A login item that records every call, for the rule's "touches nothing" case.
class CountingLoginItem final : public LoginItem
{
public:
    bool isEnabled() const override
    {
        ++statusReads;
        return enabled;
    }
    bool enable() override
    {
        ++changes;
        return enabled = true;
    }
    bool disable() override
    {
        ++changes;
        enabled = false;
        return true;
    }
    bool enabled = false;
    mutable int statusReads = 0;
    int changes = 0;
};

} // namespace

class TestAutostart : public QObject
{
    Q_OBJECT

private slots:
    void entryStartsTheProgramAndValidates()
    {
        QTemporaryDir folder;
        XdgAutostart autostart(folder.filePath(QStringLiteral("autostart")), QStringLiteral("/usr/bin/ledgewise"));
        QVERIFY(!autostart.isEnabled());
        QVERIFY(autostart.enable());
        QCOMPARE(autostart.path(), folder.filePath(QStringLiteral("autostart/org.ledgewise.Ledgewise.desktop")));
        const QByteArray text = readAll(autostart.path());
        QVERIFY2(text.startsWith("[Desktop Entry]\n"), text.constData());
        QVERIFY(text.contains("\nType=Application\n"));
        QVERIFY(text.contains("\nName=Ledgewise\n"));
        QVERIFY(text.contains("\nExec=/usr/bin/ledgewise\n"));
        QVERIFY(!text.contains("Hidden"));
        QCOMPARE(validate(autostart.path()), QString());
        QVERIFY(autostart.isEnabled());
        // Nothing left behind by the atomic write.
        QCOMPARE(QDir(folder.filePath(QStringLiteral("autostart"))).entryList(QDir::Files | QDir::Hidden),
            QStringList { QStringLiteral("org.ledgewise.Ledgewise.desktop") });

        QVERIFY(autostart.disable());
        QVERIFY(!QFile::exists(autostart.path()));
        QVERIFY(!autostart.isEnabled());
    }

    void anEntryOfTheOldNameCountsUntilAChangeReplacesIt()
    {
        QTemporaryDir folder;
        XdgAutostart autostart(folder.path(), QStringLiteral("/usr/bin/ledgewise"));
        QCOMPARE(autostart.legacyPath(), folder.filePath(QStringLiteral("ledgewise.desktop")));
        // Written by a version before the application id: still on after the upgrade.
        QVERIFY(writeFile(autostart.legacyPath(), AutostartEntry::text(QStringLiteral("/opt/old/ledgewise"))));
        QVERIFY(autostart.isEnabled());
        QVERIFY(writeFile(autostart.legacyPath(), "[Desktop Entry]\nType=Application\nExec=ledgewise\nHidden=true\n"));
        QVERIFY(!autostart.isEnabled());

        // Turning it on leaves one entry, of the new name.
        QVERIFY(LaunchAtLogin::setEnabled(autostart, true));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
            QStringList { QStringLiteral("org.ledgewise.Ledgewise.desktop") });
        QVERIFY(autostart.isEnabled());

        // Turning it off removes both.
        QVERIFY(writeFile(autostart.legacyPath(), AutostartEntry::text(QStringLiteral("/opt/old/ledgewise"))));
        QVERIFY(LaunchAtLogin::setEnabled(autostart, false));
        QVERIFY(QDir(folder.path()).isEmpty());
        QVERIFY(!autostart.isEnabled());
    }

    void defaultFolderIsTheUsersAutostartFolder()
    {
        QCOMPARE(XdgAutostart::defaultFolder(), qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/autostart"));
    }

    void programPathsThatNeedQuotingStillValidate_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("exec");
        QTest::newRow("space") << "/opt/My Apps/ledgewise"
                               << "\"/opt/My Apps/ledgewise\"";
        QTest::newRow("dollar and quote") << "/opt/a$b\"c/ledgewise"
                                          << "\"/opt/a\\\\$b\\\\\"c/ledgewise\"";
        QTest::newRow("backslash") << "/opt/a\\b/ledgewise"
                                   << "\"/opt/a\\\\\\\\b/ledgewise\"";
        QTest::newRow("percent") << "/opt/100%/ledgewise"
                                 << "/opt/100%%/ledgewise";
    }

    void programPathsThatNeedQuotingStillValidate()
    {
        QFETCH(QString, program);
        QFETCH(QString, exec);
        QCOMPARE(AutostartEntry::execValue(program), exec);
        QTemporaryDir folder;
        XdgAutostart autostart(folder.path(), program);
        QVERIFY(autostart.enable());
        QVERIFY(readAll(autostart.path()).contains("\nExec=" + exec.toUtf8() + "\n"));
        QCOMPARE(validate(autostart.path()), QString());
    }

    void statusIsPresentAndNotHidden()
    {
        QVERIFY(AutostartEntry::isEnabled(AutostartEntry::text(QStringLiteral("/usr/bin/ledgewise"))));
        QVERIFY(!AutostartEntry::isEnabled("[Desktop Entry]\nExec=ledgewise\nHidden=true\n"));
        QVERIFY(!AutostartEntry::isEnabled("[Desktop Entry]\nExec=ledgewise\nHidden = true \n"));
        QVERIFY(AutostartEntry::isEnabled("[Desktop Entry]\nExec=ledgewise\nHidden=false\n"));
        QVERIFY(AutostartEntry::isEnabled("[Desktop Entry]\n#Hidden=true\n"));
        // Only the main group speaks for the entry.
        QVERIFY(AutostartEntry::isEnabled("[Desktop Entry]\nExec=ledgewise\n[Desktop Action x]\nHidden=true\n"));

        QTemporaryDir folder;
        XdgAutostart autostart(folder.path(), QStringLiteral("/usr/bin/ledgewise"));
        QVERIFY(writeFile(autostart.path(), "[Desktop Entry]\nType=Application\nExec=ledgewise\nHidden=true\n"));
        QVERIFY(!autostart.isEnabled());
    }

    void turningOffWhatWasNeverOnTouchesNothing()
    {
        CountingLoginItem item;
        QVERIFY(LaunchAtLogin::setEnabled(item, false));
        QCOMPARE(item.changes, 0);

        // A hidden entry the desktop turned off stays as it is.
        QTemporaryDir folder;
        XdgAutostart autostart(folder.path(), QStringLiteral("/usr/bin/ledgewise"));
        const QByteArray hidden = "[Desktop Entry]\nType=Application\nExec=ledgewise\nHidden=true\n";
        QVERIFY(writeFile(autostart.path(), hidden));
        const QDateTime before = QFileInfo(autostart.path()).lastModified();
        QVERIFY(LaunchAtLogin::setEnabled(autostart, false));
        QCOMPARE(readAll(autostart.path()), hidden);
        QCOMPARE(QFileInfo(autostart.path()).lastModified(), before);

        // No folder at all: none is made.
        XdgAutostart nowhere(folder.filePath(QStringLiteral("none/autostart")), QStringLiteral("/usr/bin/ledgewise"));
        QVERIFY(LaunchAtLogin::setEnabled(nowhere, false));
        QVERIFY(!QFileInfo::exists(folder.filePath(QStringLiteral("none"))));
    }

    void turningOnOverAHiddenEntryEnablesIt()
    {
        QTemporaryDir folder;
        XdgAutostart autostart(folder.path(), QStringLiteral("/usr/bin/ledgewise"));
        QVERIFY(writeFile(autostart.path(), "[Desktop Entry]\nType=Application\nExec=ledgewise\nHidden=true\n"));
        QVERIFY(LaunchAtLogin::setEnabled(autostart, true));
        QVERIFY(autostart.isEnabled());
        QVERIFY(LaunchAtLogin::setEnabled(autostart, false));
        QVERIFY(!QFile::exists(autostart.path()));
    }

    void anAutostartFolderThatCannotBeWrittenRefusesToTurnOn()
    {
        QTemporaryDir home;
        // Where the folder should be, a file: nothing can be made there, even by root.
        const QString blocked = home.filePath(QStringLiteral("autostart"));
        QVERIFY(writeFile(blocked, "not a folder"));
        XdgAutostart autostart(blocked, QStringLiteral("/usr/bin/ledgewise"));
        QVERIFY(!LaunchAtLogin::setEnabled(autostart, true));
        QVERIFY(!autostart.isEnabled());
        QCOMPARE(readAll(blocked), QByteArray("not a folder"));

        // A read-only folder stops everyone but root.
        if (::geteuid() != 0) {
            const QString readOnly = home.filePath(QStringLiteral("readonly"));
            QVERIFY(QDir().mkpath(readOnly));
            QVERIFY(QFile::setPermissions(readOnly, QFile::ReadOwner | QFile::ExeOwner));
            XdgAutostart locked(readOnly, QStringLiteral("/usr/bin/ledgewise"));
            QVERIFY(!LaunchAtLogin::setEnabled(locked, true));
            QVERIFY(QDir(readOnly).isEmpty());
            QFile::setPermissions(readOnly, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }

    void thePreferenceDrivesTheEntry()
    {
        QTemporaryDir folder;
        const QString path = QDir(folder.path()).filePath(QStringLiteral("org.ledgewise.Ledgewise.desktop"));
        FakeKeyValueStore settings;
        PreferencesStore prefs(settings);
        LaunchAtLogin::Follower follower(
            prefs, std::make_unique<XdgAutostart>(folder.path(), QStringLiteral("/usr/bin/ledgewise")));

        prefs.update([](Preferences &p) { p.launchAtLogin = true; });
        QVERIFY(readAll(path).contains("Exec=/usr/bin/ledgewise"));
        QVERIFY(prefs.current().launchAtLogin);

        // Another preference changing leaves the entry alone.
        QVERIFY(QFile::remove(path));
        prefs.update([](Preferences &p) { p.width = 300; });
        QVERIFY(!QFile::exists(path));

        QVERIFY(writeFile(path, AutostartEntry::text(QStringLiteral("/usr/bin/ledgewise"))));
        prefs.update([](Preferences &p) { p.launchAtLogin = false; });
        QVERIFY(!QFile::exists(path));
        QVERIFY(!prefs.current().launchAtLogin);
    }

    void thePreferenceReadsBackOffWhenTheFolderCannotBeWritten()
    {
        QTemporaryDir home;
        const QString blocked = home.filePath(QStringLiteral("autostart"));
        QVERIFY(writeFile(blocked, "not a folder"));
        FakeKeyValueStore settings;
        PreferencesStore prefs(settings);
        LaunchAtLogin::Follower follower(
            prefs, std::make_unique<XdgAutostart>(blocked, QStringLiteral("/usr/bin/ledgewise")));
        int changes = 0;
        connect(&prefs, &PreferencesStore::currentChanged, this, [&] { ++changes; });

        prefs.update([](Preferences &p) { p.launchAtLogin = true; });
        QVERIFY(!prefs.current().launchAtLogin);
        // On, then back off: the stored record says off too.
        QCOMPARE(changes, 2);
        PreferencesStore reread(settings);
        QVERIFY(!reread.current().launchAtLogin);
    }
};

QTEST_GUILESS_MAIN(TestAutostart)
#include "test_autostart.moc"
