// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWindowList>

namespace ledgewise {

// Starting Ledgewise again while it runs opens the settings, unless one of its own
// windows is already showing: then the user is looking at Ledgewise and nothing more
// opens. Its own windows are the ones a user opens and works with (settings,
// onboarding, the update result): normal windows and dialogs. The surfaces are tool
// windows and the menus popups; they are always there and do not count.
bool anyOwnWindowShowing(const QWindowList &windows);

} // namespace ledgewise
