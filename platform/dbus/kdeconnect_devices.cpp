// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/dbus/kdeconnect_devices.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace ledgewise {

namespace {

const QString daemonPath = QStringLiteral("/modules/kdeconnect");
const QString daemonInterface = QStringLiteral("org.kde.kdeconnect.daemon");
const QString deviceInterface = QStringLiteral("org.kde.kdeconnect.device");
const QString shareInterface = QStringLiteral("org.kde.kdeconnect.device.share");

// A device's object; empty for an id that makes no object path.
QString devicePath(const QString &id)
{
    const QString path = daemonPath + QStringLiteral("/devices/") + id;
    return QDBusObjectPath(path).path();
}

} // namespace

KdeConnectDevices::KdeConnectDevices(QObject *parent)
    : KdeConnectDevices(QDBusConnection::sessionBus(), parent)
{ }

KdeConnectDevices::KdeConnectDevices(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    if (m_bus.isConnected())
        watch();
}

KdeConnectDevices::~KdeConnectDevices() = default;

QString KdeConnectDevices::serviceName()
{
    return QStringLiteral("org.kde.kdeconnect");
}

QString KdeConnectDevices::unavailableText()
{
    return QStringLiteral("No paired device is reachable. Pair a phone with KDE Connect.");
}

QString KdeConnectDevices::sendsToText(const QString &deviceName)
{
    if (deviceName.isEmpty())
        return QStringLiteral("Sends to the paired device.");
    return QStringLiteral("Sends to %1.").arg(deviceName);
}

QString KdeConnectDevices::statusText() const
{
    return canSend() ? sendsToText(m_deviceName) : unavailableText();
}

void KdeConnectDevices::watch()
{
    // The service starts with the desktop or later, and ends when the user quits it.
    m_watcher = new QDBusServiceWatcher(serviceName(), m_bus,
        QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
    connect(m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &KdeConnectDevices::refresh);
    connect(m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        ++m_generation;
        setDevice(QString(), QString());
    });
    // A device added, removed, coming into reach or leaving it, paired or unpaired,
    // renamed: the list is asked for again (the signals differ between versions).
    for (const char *signal : { "deviceAdded", "deviceRemoved", "deviceVisibilityChanged", "deviceListChanged" })
        m_bus.connect(serviceName(), daemonPath, daemonInterface, QLatin1String(signal), this, SLOT(refresh()));
    for (const char *signal : { "reachableChanged", "pairStateChanged", "trustedChanged", "nameChanged" })
        m_bus.connect(serviceName(), QString(), deviceInterface, QLatin1String(signal), this, SLOT(refresh()));
    refresh();
}

void KdeConnectDevices::refresh()
{
    if (!m_bus.isConnected())
        return;
    const quint64 generation = ++m_generation;
    QDBusMessage call
        = QDBusMessage::createMethodCall(serviceName(), daemonPath, daemonInterface, QStringLiteral("devices"));
    call << true << true; // only reachable, only paired
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const QDBusPendingReply<QStringList> reply = *watcher;
        QString first;
        if (!reply.isError()) {
            for (const QString &id : reply.value()) {
                if (!devicePath(id).isEmpty()) {
                    first = id;
                    break;
                }
            }
        }
        if (first.isEmpty()) {
            setDevice(QString(), QString());
            return;
        }
        // Usable at once; its name follows for the tooltip.
        setDevice(first, first == m_deviceId ? m_deviceName : QString());
        fetchName(first, generation);
    });
}

void KdeConnectDevices::fetchName(const QString &id, quint64 generation)
{
    QDBusMessage get = QDBusMessage::createMethodCall(
        serviceName(), devicePath(id), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << deviceInterface << QStringLiteral("name");
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(get), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, generation, id] {
        watcher->deleteLater();
        if (generation != m_generation || id != m_deviceId)
            return;
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            setDevice(id, reply.value().variant().toString());
    });
}

void KdeConnectDevices::setDevice(const QString &id, const QString &name)
{
    if (id == m_deviceId && name == m_deviceName)
        return;
    m_deviceId = id;
    m_deviceName = name;
    emit changed();
}

bool KdeConnectDevices::send(const DeviceShare &share)
{
    if (!canSend() || share.isEmpty())
        return false;
    const QString path = devicePath(m_deviceId) + QStringLiteral("/share");
    QDBusMessage call;
    if (share.urls.isEmpty()) {
        call = QDBusMessage::createMethodCall(serviceName(), path, shareInterface, QStringLiteral("shareText"));
        call << share.text;
    } else if (share.urls.size() == 1) {
        call = QDBusMessage::createMethodCall(serviceName(), path, shareInterface, QStringLiteral("shareUrl"));
        call << share.urls.constFirst();
    } else {
        call = QDBusMessage::createMethodCall(serviceName(), path, shareInterface, QStringLiteral("shareUrls"));
        call << share.urls;
    }
    // The device takes it from here; its answer changes nothing on the surface.
    return m_bus.send(call);
}

} // namespace ledgewise
