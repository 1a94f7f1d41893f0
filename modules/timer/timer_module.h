// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/ledgewise_module.h"
#include "modules/timer/timer_session.h"

namespace ledgewise {

// The countdown as a surface module: its panel starts a preset or a custom number of
// minutes and shows and cancels a running countdown.
class TimerModule final : public LedgewiseModule
{
    Q_OBJECT
    Q_PROPERTY(ledgewise::TimerSession *session READ session CONSTANT)
    Q_PROPERTY(QList<int> presets READ presets CONSTANT)
    Q_PROPERTY(int minimumMinutes MEMBER minimumMinutes CONSTANT)
    Q_PROPERTY(int maximumMinutes MEMBER maximumMinutes CONSTANT)
    Q_PROPERTY(int initialCustomMinutes MEMBER initialCustomMinutes CONSTANT)

public:
    static constexpr int minimumMinutes = 1;
    static constexpr int maximumMinutes = 180;
    static constexpr int initialCustomMinutes = 20;

    explicit TimerModule(TimerSession &session, QObject *parent = nullptr);

    TimerSession *session() const { return &m_session; }
    static QList<int> presets() { return { 5, 10, 15, 30 }; }

    // Records the choice, then starts `minutes` × 60 seconds.
    Q_INVOKABLE void startMinutes(int minutes);
    // The label of a number of minutes on a preset button ("5m") and on the stepper ("20 min").
    Q_INVOKABLE static QString presetLabel(int minutes);
    Q_INVOKABLE static QString stepperLabel(int minutes);
    // The stepper's next value, kept within 1 to 180.
    Q_INVOKABLE static int stepped(int minutes, int step);

    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

private:
    void followSession();

    TimerSession &m_session;
};

} // namespace ledgewise
