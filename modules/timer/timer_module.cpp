// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_module.h"

#include <algorithm>

namespace ledgewise {

TimerModule::TimerModule(TimerSession &session, QObject *parent)
    : LedgewiseModule(ModuleID::timer, parent)
    , m_session(session)
{
    // A running countdown is the one active glance: its clock, moved on at each tick.
    connect(&m_session, &TimerSession::timerDidChange, this, &TimerModule::followSession);
    connect(&m_session, &TimerSession::ticked, this, &TimerModule::followSession);
    followSession();
}

void TimerModule::followSession()
{
    if (m_session.isRunning())
        setGlance(QStringLiteral("timer"), m_session.remainingText(), true);
    else
        setGlance(systemImage(), QStringLiteral("Timer"));
}

void TimerModule::startMinutes(int minutes)
{
    m_session.setLastPresetMinutes(minutes);
    m_session.start(double(minutes) * 60.0);
}

QString TimerModule::presetLabel(int minutes)
{
    return QStringLiteral("%1m").arg(minutes);
}

QString TimerModule::stepperLabel(int minutes)
{
    return QStringLiteral("%1 min").arg(minutes);
}

int TimerModule::stepped(int minutes, int step)
{
    return std::clamp(minutes + step, minimumMinutes, maximumMinutes);
}

QUrl TimerModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("TimerExpandedView.qml"));
}

QVariantMap TimerModule::expandedViewProperties() const
{
    return { { QStringLiteral("module"), QVariant::fromValue(const_cast<TimerModule *>(this)) } };
}

} // namespace ledgewise
