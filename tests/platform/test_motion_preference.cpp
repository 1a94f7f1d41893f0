// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's animation setting, read from a settings portal on a private session bus.
#include "platform/dbus/motion_preference.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;

namespace {

class FakeSettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    bool enableAnimations = false;

public slots:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        if (group == QLatin1String("org.gnome.desktop.interface") && key == QLatin1String("enable-animations"))
            return QDBusVariant(QVariant::fromValue(QDBusVariant(enableAnimations)));
        return QDBusVariant(QString());
    }

signals:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

} // namespace

class TestMotionPreference : public QObject
{
    Q_OBJECT

private slots:
    void withoutAPortalAnimationsStayOn()
    {
        MotionPreference preference;
        QTest::qWait(200); // the failed read may still be on its way: nothing changes
        QVERIFY(!preference.reduceMotion());
    }

    void followsTheDesktopSetting()
    {
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
        FakeSettingsPortal portal;
        QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

        MotionPreference preference;
        QTRY_VERIFY(preference.reduceMotion());

        QSignalSpy changed(&preference, &MotionPreference::changed);
        emit portal.SettingChanged(
            QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"), QDBusVariant(true));
        QVERIFY(changed.wait(3000));
        QVERIFY(!preference.reduceMotion());

        emit portal.SettingChanged(
            QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("cursor-size"), QDBusVariant(48));
        QVERIFY(!changed.wait(300));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }
};

QTEST_GUILESS_MAIN(TestMotionPreference)
#include "test_motion_preference.moc"
