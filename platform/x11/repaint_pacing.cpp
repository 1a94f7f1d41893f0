// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/repaint_pacing.h"

#include <QWindow>
#include <QtGlobal>

namespace ledgewise {

namespace {

// Shared-memory images make each repaint wait for the X server (a round trip before the
// next paint into the same pixels), which wakes Qt's X reader thread and the main thread
// every time. The surfaces are a few hundred pixels wide: sending their pixels in the
// request itself is cheaper than those wake-ups.
constexpr char noSharedMemory[] = "QT_XCB_NO_MITSHM";
// Qt paints a window 5 ms after its first change, on a timer of its own: a second
// wake-up after every tick of a countdown. Our changes come in one turn of the event
// loop (every surface's at once), so the paint follows in the next turn with no wait.
constexpr char updateIdleTime[] = "QT_QPA_UPDATE_IDLE_TIME";

bool setByUs[2] = { false, false };

} // namespace

void paceRepaints()
{
    // A value the user set wins.
    if (!qEnvironmentVariableIsSet(noSharedMemory))
        setByUs[0] = qputenv(noSharedMemory, "1");
    if (!qEnvironmentVariableIsSet(updateIdleTime))
        setByUs[1] = qputenv(updateIdleTime, "0");
}

void forgetRepaintPacing()
{
    // The first is read when the display is opened. The second is read once, at the
    // first repaint any window asks for: one hidden window asks now, so that it is read
    // before the variable goes.
    {
        QWindow reader;
        reader.create();
        reader.requestUpdate();
    }
    if (setByUs[0])
        qunsetenv(noSharedMemory);
    if (setByUs[1])
        qunsetenv(updateIdleTime);
    setByUs[0] = setByUs[1] = false;
}

} // namespace ledgewise
