// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/dbus/sleep_monitor.h"

#include <QDBusConnection>

namespace ledgewise {

SleepMonitor::SleepMonitor(QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    m_listening = bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
        SLOT(prepareForSleep(bool)));
}

void SleepMonitor::prepareForSleep(bool sleeping)
{
    if (!sleeping)
        emit woke();
}

} // namespace ledgewise
