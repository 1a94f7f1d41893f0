// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/dbus/freedesktop_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace ledgewise {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

QDBusMessage call(const QString &method)
{
    return QDBusMessage::createMethodCall(service, path, service, method);
}

} // namespace

FreedesktopNotifications::FreedesktopNotifications(QObject *parent)
    : QObject(parent)
{ }

FreedesktopNotifications::~FreedesktopNotifications() = default;

void FreedesktopNotifications::requestAuthorization(QObject *context, std::function<void(bool)> answer)
{
    auto *watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call(QStringLiteral("GetServerInformation"))), this);
    QPointer<QObject> guard(context);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, guard, answer = std::move(answer)] {
        watcher->deleteLater();
        if (guard)
            answer(!watcher->isError());
    });
}

void FreedesktopNotifications::add(const NotificationRequest &request)
{
    removePending(request.identifier);
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [this, request] {
        removePending(request.identifier);
        show(request);
    });
    m_pending.insert(request.identifier, timer);
    timer->start(int(std::clamp(request.delaySeconds * 1000.0, 0.0, 2'000'000'000.0)));
}

void FreedesktopNotifications::removePending(const QString &identifier)
{
    if (QTimer *timer = m_pending.take(identifier))
        timer->deleteLater();
}

void FreedesktopNotifications::show(const NotificationRequest &request)
{
    QDBusMessage notify = call(QStringLiteral("Notify"));
    const QVariantMap hints = {
        { QStringLiteral("desktop-entry"), QStringLiteral("ledgewise") },
        // The desktop's own notification sound: no particular sound is named, and the
        // service is asked not to keep quiet.
        { QStringLiteral("suppress-sound"), false },
        { QStringLiteral("urgency"), QVariant::fromValue(uchar(1)) },
    };
    notify << QStringLiteral("Ledgewise") << m_shown.value(request.identifier, 0u) << QString() << request.title
           << request.body << QStringList() << hints << -1;
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(notify), this);
    const QString identifier = request.identifier;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, identifier] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (!reply.isError())
            m_shown.insert(identifier, reply.value());
    });
}

} // namespace ledgewise
