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
    // One wake-up a second, and the system may move it a little to share wake-ups.
    m_tick.setInterval(1000);
    m_tick.setTimerType(Qt::CoarseTimer);
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
    m_tick.start();
    pulse();
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
    if (m_remaining <= 0)
        finish();
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
        notifications->add({QString::fromLatin1(notificationID), QStringLiteral("Timer finished"),
                            QStringLiteral("Ledgewise"), std::max(duration, 1.0)});
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
