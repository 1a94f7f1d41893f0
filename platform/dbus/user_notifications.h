// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace ledgewise {

// A notification to show after a delay, under an identifier: a later request with the
// same identifier replaces a pending one.
struct NotificationRequest {
    QString identifier;
    QString title;
    QString body;
    double delaySeconds = 0;
};

// The desktop's notifications, as the timer uses them.
class UserNotifications
{
public:
    virtual ~UserNotifications() = default;
    // Whether notifications can be shown. The answer comes later, on the main thread,
    // and only while `context` lives.
    virtual void requestAuthorization(QObject *context, std::function<void(bool granted)> answer) = 0;
    virtual void add(const NotificationRequest &request) = 0;
    virtual void removePending(const QString &identifier) = 0;
};

} // namespace ledgewise
