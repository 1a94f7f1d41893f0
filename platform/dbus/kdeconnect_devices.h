// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/dbus/device_sender.h"

#include <QDBusConnection>
#include <QObject>

class QDBusServiceWatcher;

namespace ledgewise {

// The phones paired through KDE Connect, over its session-bus service: which ones are
// paired and reachable now, followed as the service comes and goes and as devices
// connect, and sending to the first of them through its share plugin. Every call is
// asynchronous; without a session bus or the service there is simply no device.
class KdeConnectDevices : public QObject, public DeviceSender
{
    Q_OBJECT
    Q_PROPERTY(bool available READ canSend NOTIFY changed)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)

public:
    explicit KdeConnectDevices(QObject *parent = nullptr);
    // Over another connection (tests use a bus of their own).
    KdeConnectDevices(const QDBusConnection &bus, QObject *parent = nullptr);
    ~KdeConnectDevices() override;

    static QString serviceName();
    // What the button says of itself: where a send goes, or why it cannot.
    static QString unavailableText();
    static QString sendsToText(const QString &deviceName);

    bool canSend() const override { return !m_deviceId.isEmpty(); }
    bool send(const DeviceShare &share) override;
    // The id and name of the device a send goes to; empty while there is none.
    QString deviceId() const { return m_deviceId; }
    QString deviceName() const { return m_deviceName; }
    QString statusText() const;

public slots:
    // Asks the service again which devices are paired and reachable.
    void refresh();

signals:
    void changed();

private:
    void watch();
    void setDevice(const QString &id, const QString &name);
    void fetchName(const QString &id, quint64 generation);

    QDBusConnection m_bus;
    QDBusServiceWatcher *m_watcher = nullptr;
    // Answers to an older question than the last one asked are thrown away.
    quint64 m_generation = 0;
    QString m_deviceId;
    QString m_deviceName;
};

} // namespace ledgewise
