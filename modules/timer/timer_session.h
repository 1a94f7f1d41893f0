// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace ledgewise {

class SystemBell;
class UserNotifications;

// The one countdown: running while it has an end date, idle otherwise. It counts down
// to an absolute end time, beeps when it ends, and has the desktop show "Timer finished"
// at the end time even when no surface is visible. No pause: starting again restarts.
class TimerSession : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY endDateChanged)
    Q_PROPERTY(double remaining READ remaining NOTIFY remainingChanged)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY remainingChanged)
    Q_PROPERTY(
        qint64 lastPresetMinutes READ lastPresetMinutes WRITE setLastPresetMinutes NOTIFY lastPresetMinutesChanged)

public:
    // Milliseconds since the epoch; tests pass their own clock.
    using Clock = std::function<qint64()>;

    static constexpr auto notificationID = "ledgewise.timer.complete";

    TimerSession(UserNotifications *notifications, SystemBell *bell, Clock clock = {}, QObject *parent = nullptr);
    ~TimerSession() override;

    // Present exactly while the countdown runs, in milliseconds since the epoch.
    std::optional<qint64> endDate() const { return m_endDate; }
    bool isRunning() const { return m_endDate.has_value(); }
    double remaining() const { return m_remaining; }
    QString remainingText() const;
    qint64 lastPresetMinutes() const { return m_lastPresetMinutes; }
    void setLastPresetMinutes(qint64 minutes);

    // Starts, or restarts, a countdown of `duration` seconds.
    Q_INVOKABLE void start(double duration);
    // Stops without a beep and withdraws the pending notification.
    Q_INVOKABLE void cancel();

    // The ticker's step: recomputes `remaining` from the end date and finishes when it
    // is reached. Runs once a second while running, just after the clock text changes.
    void pulse();

    bool isTicking() const { return m_tick.isActive(); }
    // How long after now the next tick is due: just past the moment the clock text next
    // changes. Nothing while idle.
    std::optional<int> nextTickInMs() const;

signals:
    // On start, cancel and finish only, never once a second.
    void timerDidChange();
    void endDateChanged();
    void remainingChanged();
    // Each tick that leaves the countdown running: the one beat the surfaces refresh on,
    // so that a running countdown wakes the program once a second and no more.
    void ticked();
    void lastPresetMinutesChanged();

private:
    void beginTicking();
    void scheduleNextTick();
    void finish();
    void requestAuthorizationThenNotify(double duration);
    void setEndDate(std::optional<qint64> endDate);
    void setRemaining(double remaining);

    UserNotifications *m_notifications;
    SystemBell *m_bell;
    Clock m_clock;
    std::optional<qint64> m_endDate;
    double m_remaining = 0;
    qint64 m_lastPresetMinutes = 5;
    QTimer m_tick;
};

} // namespace ledgewise
