// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A stand-in for KDE Connect's daemon on the test's private session bus, under its real
// names: it lists the devices it was given, answers their names and records what its
// share plugin was asked to send. It runs on a bus connection of its own, as the real
// daemon is another process.

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

namespace ledgewise::testing {

class FakeKdeConnectShare : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kdeconnect.device.share")

public:
    struct Call {
        QString method;
        QStringList arguments;
    };
    std::vector<Call> *calls = nullptr;

public slots:
    void shareUrl(const QString &url) { calls->push_back({ QStringLiteral("shareUrl"), { url } }); }
    void shareUrls(const QStringList &urls) { calls->push_back({ QStringLiteral("shareUrls"), urls }); }
    void shareText(const QString &text) { calls->push_back({ QStringLiteral("shareText"), { text } }); }
};

class FakeKdeConnectDevice : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kdeconnect.device")
    Q_PROPERTY(QString name READ name)
    Q_PROPERTY(bool isReachable READ isReachable)

public:
    QString id;
    QString deviceName;
    bool reachable = true;
    bool paired = true;
    FakeKdeConnectShare share;

    QString name() const { return deviceName; }
    bool isReachable() const { return reachable; }

signals:
    void reachableChanged(bool reachable);
};

class FakeKdeConnectDaemon : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kdeconnect.daemon")

public:
    std::vector<std::unique_ptr<FakeKdeConnectDevice>> deviceObjects;

public slots:
    QStringList devices(bool onlyReachable, bool onlyPaired) const
    {
        QStringList ids;
        for (const auto &device : deviceObjects) {
            if ((!onlyReachable || device->reachable) && (!onlyPaired || device->paired))
                ids << device->id;
        }
        return ids;
    }

signals:
    void deviceVisibilityChanged(const QString &id, bool isVisible);
    void deviceListChanged();
};

class FakeKdeConnect
{
public:
    FakeKdeConnect()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake-kdeconnect")))
    {
        m_bus.registerObject(QStringLiteral("/modules/kdeconnect"), &m_daemon,
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    }
    ~FakeKdeConnect()
    {
        stop();
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-kdeconnect"));
    }

    // Adds a device before or while the service runs.
    FakeKdeConnectDevice &addDevice(const QString &id, const QString &name, bool reachable, bool paired)
    {
        auto device = std::make_unique<FakeKdeConnectDevice>();
        device->id = id;
        device->deviceName = name;
        device->reachable = reachable;
        device->paired = paired;
        device->share.calls = &calls;
        const QString path = QStringLiteral("/modules/kdeconnect/devices/") + id;
        m_bus.registerObject(path, device.get(),
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals | QDBusConnection::ExportAllProperties);
        m_bus.registerObject(path + QStringLiteral("/share"), &device->share, QDBusConnection::ExportAllSlots);
        m_daemon.deviceObjects.push_back(std::move(device));
        emit m_daemon.deviceListChanged();
        return *m_daemon.deviceObjects.back();
    }

    // The phone comes into reach or leaves it; the daemon says so, as the real one does.
    void setReachable(FakeKdeConnectDevice &device, bool reachable)
    {
        device.reachable = reachable;
        emit device.reachableChanged(reachable);
        emit m_daemon.deviceVisibilityChanged(device.id, reachable);
    }

    bool start() { return m_bus.registerService(QStringLiteral("org.kde.kdeconnect")); }
    void stop() { m_bus.unregisterService(QStringLiteral("org.kde.kdeconnect")); }

    std::vector<FakeKdeConnectShare::Call> calls;

private:
    QDBusConnection m_bus;
    FakeKdeConnectDaemon m_daemon;
};

} // namespace ledgewise::testing
