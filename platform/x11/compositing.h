// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace ledgewise {

// Whether a compositing manager runs on the application's X display (some client owns
// the _NET_WM_CM_S<screen> selection). Only then do translucent pixels blend with what
// lies behind a window; without one the X server shows them as solid colour. False
// where there is no X display.
bool compositingManagerRunning();

} // namespace ledgewise
