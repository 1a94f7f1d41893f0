// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The phones paired through KDE Connect, seen over a private session bus: none without
// the service; the first paired, reachable device as the service comes, goes and its
// devices come into reach; and what a send asks of the device's share plugin.
#include "platform/dbus/kdeconnect_devices.h"
#include "tests/support/fake_kdeconnect.h"

#include <QSignalSpy>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

class TestKdeConnectDevices : public QObject
{
    Q_OBJECT

private slots:
    void withoutTheServiceThereIsNoDeviceAndNothingIsSent()
    {
        KdeConnectDevices devices;
        QSignalSpy changed(&devices, &KdeConnectDevices::changed);
        QVERIFY(!changed.wait(500)); // the failed question may still be on its way
        QVERIFY(!devices.canSend());
        QCOMPARE(devices.statusText(), QStringLiteral("No paired device is reachable. Pair a phone with KDE Connect."));
        QVERIFY(!devices.send(DeviceShare { { QStringLiteral("file:///tmp/a.txt") }, {} }));
    }

    void followsTheServiceAsItComesAndGoes()
    {
        FakeKdeConnect service;
        service.addDevice(QStringLiteral("phone_1"), QStringLiteral("Pixel"), true, true);
        KdeConnectDevices devices;
        QTest::qWait(200);
        QVERIFY(!devices.canSend());

        QVERIFY(service.start());
        QTRY_VERIFY_WITH_TIMEOUT(devices.canSend(), 10000);
        QCOMPARE(devices.deviceId(), QStringLiteral("phone_1"));
        QTRY_COMPARE_WITH_TIMEOUT(devices.deviceName(), QStringLiteral("Pixel"), 10000);
        QCOMPARE(devices.statusText(), QStringLiteral("Sends to Pixel."));

        service.stop();
        QTRY_VERIFY_WITH_TIMEOUT(!devices.canSend(), 10000);
        QCOMPARE(devices.deviceName(), QString());
        QVERIFY(service.start());
        QTRY_VERIFY_WITH_TIMEOUT(devices.canSend(), 10000);
    }

    void onlyAPairedReachableDeviceCounts()
    {
        FakeKdeConnect service;
        FakeKdeConnectDevice &away = service.addDevice(QStringLiteral("away"), QStringLiteral("Tablet"), false, true);
        service.addDevice(QStringLiteral("stranger"), QStringLiteral("Someone's phone"), true, false);
        QVERIFY(service.start());
        KdeConnectDevices devices;
        QSignalSpy changed(&devices, &KdeConnectDevices::changed);
        QVERIFY(!changed.wait(1000));
        QVERIFY(!devices.canSend());

        // The paired tablet comes into reach: the daemon's signal is enough.
        service.setReachable(away, true);
        QTRY_VERIFY_WITH_TIMEOUT(devices.canSend(), 10000);
        QCOMPARE(devices.deviceId(), QStringLiteral("away"));
        service.setReachable(away, false);
        QTRY_VERIFY_WITH_TIMEOUT(!devices.canSend(), 10000);
    }

    void sendsToTheFirstDeviceThroughItsSharePlugin()
    {
        FakeKdeConnect service;
        service.addDevice(QStringLiteral("first"), QStringLiteral("Pixel"), true, true);
        service.addDevice(QStringLiteral("second"), QStringLiteral("Tablet"), true, true);
        QVERIFY(service.start());
        KdeConnectDevices devices;
        QTRY_VERIFY_WITH_TIMEOUT(devices.canSend(), 10000);
        QCOMPARE(devices.deviceId(), QStringLiteral("first"));

        QVERIFY(devices.send(DeviceShare { { QStringLiteral("file:///home/me/report%201.pdf") }, {} }));
        QTRY_COMPARE_WITH_TIMEOUT(service.calls.size(), size_t(1), 10000);
        QCOMPARE(service.calls[0].method, QStringLiteral("shareUrl"));
        QCOMPARE(service.calls[0].arguments, QStringList({ "file:///home/me/report%201.pdf" }));

        const QStringList two { QStringLiteral("https://example.org/a"), QStringLiteral("https://example.org/b") };
        QVERIFY(devices.send(DeviceShare { two, {} }));
        QTRY_COMPARE_WITH_TIMEOUT(service.calls.size(), size_t(2), 10000);
        QCOMPARE(service.calls[1].method, QStringLiteral("shareUrls"));
        QCOMPARE(service.calls[1].arguments, two);

        QVERIFY(devices.send(DeviceShare { {}, QStringLiteral("-- not an option\nsecond line") }));
        QTRY_COMPARE_WITH_TIMEOUT(service.calls.size(), size_t(3), 10000);
        QCOMPARE(service.calls[2].method, QStringLiteral("shareText"));
        QCOMPARE(service.calls[2].arguments, QStringList({ "-- not an option\nsecond line" }));

        QVERIFY(!devices.send(DeviceShare {}));
        QTest::qWait(200);
        QCOMPARE(service.calls.size(), size_t(3));
    }

    void goneBeforeItsAnswersArriveIsSafe()
    {
        FakeKdeConnect service;
        service.addDevice(QStringLiteral("phone"), QStringLiteral("Pixel"), true, true);
        QVERIFY(service.start());
        for (int i = 0; i < 20; ++i) {
            auto devices = std::make_unique<KdeConnectDevices>();
            devices->refresh();
        }
        // Answers to the questions of objects already gone arrive and are dropped.
        KdeConnectDevices survivor;
        QTRY_VERIFY_WITH_TIMEOUT(survivor.canSend(), 10000);
    }
};

QTEST_GUILESS_MAIN(TestKdeConnectDevices)
#include "test_kdeconnect_devices.moc"
