// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_session.h"

#include "modules/timer/timer_math.h"
#include "platform/dbus/user_notifications.h"
#include "platform/x11/system_bell.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace ledgewise {

TimerSession::TimerSession(UserNotifications *notifications, SystemBell *bell, Clock clock, QObject *parent)
    : QObject(parent)
    , m_notifications(notifications)
    , m_bell(bell)
    , m_clock(clock ? std::move(clock) : Clock([] { return QDateTime::currentMSecsSinceEpoch(); }))
{
    // The one timer of a running countdown. Each pulse sets it afresh for the moment
    // the clock text next changes, so a tick always brings a new text and the surfaces
    // never show a second late; it is precise because a coarse timer may fire early,
    // before the text changed, and cost a second wake-up to catch up.
    m_tick.setSingleShot(true);
    m_tick.setTimerType(Qt::PreciseTimer);
    connect(&m_tick, &QTimer::timeout, this, &TimerSession::pulse);
}

TimerSession::~TimerSession() = default;

QString TimerSession::remainingText() const
{
    return TimerMath::formatted(m_remaining);
}

void TimerSession::setLastPresetMinutes(qint64 minutes)
{
    if (m_lastPresetMinutes == minutes)
        return;
    m_lastPresetMinutes = minutes;
    emit lastPresetMinutesChanged();
}

void TimerSession::start(double duration)
{
    if (m_notifications)
        m_notifications->removePending(QString::fromLatin1(notificationID));
    setEndDate(m_clock() + qint64(std::llround(duration * 1000.0)));
    setRemaining(duration);
    requestAuthorizationThenNotify(duration);
    beginTicking();
    emit timerDidChange();
}

void TimerSession::cancel()
{
    setEndDate(std::nullopt);
    setRemaining(0);
    m_tick.stop();
    if (m_notifications)
        m_notifications->removePending(QString::fromLatin1(notificationID));
    emit timerDidChange();
}

void TimerSession::beginTicking()
{
    m_tick.stop();
    pulse();
}

std::optional<int> TimerSession::nextTickInMs() const
{
    if (!m_endDate)
        return std::nullopt;
    // The clock shows whole seconds rounded up, so its text changes each time the time
    // left crosses a whole second: 300.0 s left shows "5:00" until 299.0 s are left.
    // A few milliseconds past that moment, so that a clock read at the tick is surely
    // beyond it.
    constexpr qint64 pastTheChangeMs = 5;
    const qint64 left = *m_endDate - m_clock();
    if (left <= 0)
        return 0;
    const qint64 untilChange = (left - 1) % 1000 + 1;
    return int(untilChange + pastTheChangeMs);
}

void TimerSession::scheduleNextTick()
{
    if (const auto next = nextTickInMs())
        m_tick.start(*next);
    else
        m_tick.stop();
}

void TimerSession::pulse()
{
    if (!m_endDate) {
        setRemaining(0);
        return;
    }
    // Always from the absolute end, so late or merged ticks never drift.
    const double left = double(*m_endDate - m_clock()) / 1000.0;
    setRemaining(std::isnan(left) ? 0 : std::max(left, 0.0));
    if (m_remaining <= 0) {
        finish();
        return;
    }
    scheduleNextTick();
    emit ticked();
}

void TimerSession::finish()
{
    setEndDate(std::nullopt);
    setRemaining(0);
    m_tick.stop();
    if (m_bell)
        m_bell->ring();
    // The desktop shows the pending notification at about this moment on its own.
    emit timerDidChange();
}

void TimerSession::requestAuthorizationThenNotify(double duration)
{
    if (!m_notifications)
        return;
    UserNotifications *notifications = m_notifications;
    // The delay counts from the answer, not from the start; at least one second.
    notifications->requestAuthorization(this, [notifications, duration](bool granted) {
        if (!granted)
            return;
        notifications->add({ QString::fromLatin1(notificationID), QStringLiteral("Timer finished"),
            QStringLiteral("Ledgewise"), std::max(duration, 1.0) });
    });
}

void TimerSession::setEndDate(std::optional<qint64> endDate)
{
    if (m_endDate == endDate)
        return;
    m_endDate = endDate;
    emit endDateChanged();
}

void TimerSession::setRemaining(double remaining)
{
    if (m_remaining == remaining)
        return;
    m_remaining = remaining;
    emit remainingChanged();
}

} // namespace ledgewise
