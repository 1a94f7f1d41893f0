// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;
struct xcb_connection_t;

namespace ledgewise {

// Reports every mouse button pressed anywhere on the X display, in any application,
// through XInput 2 raw events on the root window. Raw events arrive even while another
// client holds a grab, and they never take the click away from anyone.
class GlobalClickMonitor : public QObject
{
    Q_OBJECT

public:
    explicit GlobalClickMonitor(QObject *parent = nullptr);
    ~GlobalClickMonitor() override;

    // False when there is no X display or it lacks XInput 2.
    bool isActive() const { return m_notifier != nullptr; }

signals:
    // `time` is the X server's time of the press, the same as the timestamp of the
    // mouse event Qt delivers when the press lands in one of our own windows.
    void buttonPressed(int button, quint32 time);

private:
    void readEvents();

    xcb_connection_t *m_connection = nullptr;
    QSocketNotifier *m_notifier = nullptr;
    uint8_t m_xinputOpcode = 0;
};

} // namespace ledgewise
