// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace ledgewise {

// Tells when the machine wakes from sleep, from logind's PrepareForSleep(false) on the
// system bus. Silent where there is no system bus or no logind.
class SleepMonitor : public QObject
{
    Q_OBJECT

public:
    explicit SleepMonitor(QObject *parent = nullptr);
    bool isListening() const { return m_listening; }

signals:
    void woke();

private slots:
    void prepareForSleep(bool sleeping);

private:
    bool m_listening = false;
};

} // namespace ledgewise
