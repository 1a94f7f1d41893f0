// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace ledgewise {

// How Qt's X11 platform paints the surfaces, chosen so that a window whose text changes
// once a second costs one wake-up a second and no more. Call `paceRepaints()` before the
// application object connects to the display and `forgetRepaintPacing()` right after:
// the settings are read by then, and the programs Ledgewise starts must not inherit them.
void paceRepaints();
void forgetRepaintPacing();

} // namespace ledgewise
