// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>

#include <optional>

namespace ledgewise {

// The middle of the window that has keyboard focus, as the window manager announces it
// (_NET_ACTIVE_WINDOW on the root window), in Qt's screen coordinates. Nothing when
// there is no X display, no window manager that says, or the window is gone.
std::optional<QPoint> activeWindowCentre();

} // namespace ledgewise
