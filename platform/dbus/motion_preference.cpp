// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/dbus/motion_preference.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace ledgewise {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.gnome.desktop.interface");
const QString key = QStringLiteral("enable-animations");

// The portal wraps values in variants, sometimes twice.
QVariant unwrap(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = qvariant_cast<QDBusVariant>(value).variant();
    return value;
}

} // namespace

MotionPreference::MotionPreference(QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // Matched on path and interface alone: only the portal speaks for that object.
    bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
        SLOT(settingChanged(QDBusMessage)));
    QDBusMessage read
        = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
    read << group << key;
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            apply(reply.arguments().constFirst());
    });
}

void MotionPreference::settingChanged(const QDBusMessage &message)
{
    const QList<QVariant> arguments = message.arguments();
    if (arguments.size() == 3 && arguments[0].toString() == group && arguments[1].toString() == key)
        apply(arguments[2]);
}

void MotionPreference::apply(const QVariant &enableAnimations)
{
    const QVariant value = unwrap(enableAnimations);
    if (value.typeId() != QMetaType::Bool)
        return;
    const bool reduce = !value.toBool();
    if (reduce == m_reduceMotion)
        return;
    m_reduceMotion = reduce;
    emit changed();
}

} // namespace ledgewise
