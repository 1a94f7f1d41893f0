// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/dbus/user_notifications.h"

#include <QHash>
#include <QObject>

class QTimer;

namespace ledgewise {

// Notifications through org.freedesktop.Notifications on the session bus. A request
// waits in-process until its time and is then shown, replacing the notification last
// shown under the same identifier. "Authorised" means a notification service answers.
class FreedesktopNotifications final : public QObject, public UserNotifications
{
    Q_OBJECT

public:
    explicit FreedesktopNotifications(QObject *parent = nullptr);
    ~FreedesktopNotifications() override;

    void requestAuthorization(QObject *context, std::function<void(bool granted)> answer) override;
    void add(const NotificationRequest &request) override;
    void removePending(const QString &identifier) override;

    bool hasPending(const QString &identifier) const { return m_pending.contains(identifier); }

private:
    void show(const NotificationRequest &request);

    QHash<QString, QTimer *> m_pending;
    QHash<QString, uint> m_shown; // identifier → the server's id, to replace it
};

} // namespace ledgewise
