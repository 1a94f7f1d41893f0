// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/dbus/application_service.h"

#include "ledgewiseadaptor.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace ledgewise {

ApplicationService::ApplicationService(QObject *parent)
    : QObject(parent)
{
    new LedgewiseAdaptor(this);
}

ApplicationService::~ApplicationService()
{
    if (m_registered) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(QString::fromLatin1(objectPath));
        bus.unregisterService(QString::fromLatin1(serviceName));
    }
}

bool ApplicationService::registerOnSessionBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const auto reply = bus.interface()->registerService(QString::fromLatin1(serviceName),
        QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered)
        return false;
    bus.registerObject(QString::fromLatin1(objectPath), this);
    m_registered = true;
    return true;
}

bool ApplicationService::callRunningInstance(const QString &method, const QVariantList &arguments)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QString::fromLatin1(serviceName), QString::fromLatin1(objectPath), QString::fromLatin1(serviceName), method);
    call.setArguments(arguments);
    // A one-shot command-line call: blocking briefly for the answer is what the
    // user waits for anyway.
    const QDBusMessage reply = bus.call(call, QDBus::Block, 5000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace ledgewise
