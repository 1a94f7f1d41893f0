// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "surfaces/display_snapshot.h"
#include "surfaces/notch_side.h"

namespace ledgewise::NotchLayout {

// The sleeping size of each style; the other presentations grow from it.
Size baseSize(NotchStyle style);

// The panel's size in a presentation, before clamping.
Size size(NotchPresentation presentation, const Preferences &preferences);

// Where a side's panel goes on a display: beside the notch when the display reports
// the strip on that side, otherwise a fixed distance in from the display's edge;
// always hanging from the very top of the display, and kept inside it.
Rect frame(
    NotchSide side, NotchPresentation presentation, const Preferences &preferences, const DisplaySnapshot &display);

// Shrinks `rect` to fit `bounds`, then moves it inside: left edge first, then right,
// then bottom, then top, in that order.
Rect clamp(Rect rect, const Rect &bounds);

// The roundest corner a surface may have: the largest radius the settings offer. An
// open pill at half its height would be an upright capsule, and an X window without a
// compositor is cut to its shape, so titles and the rows' buttons would be cut off.
inline constexpr double maximumCornerRadius = 24;

// The corner radius of a surface `height` points tall: the style's rule, never beyond
// maximumCornerRadius. No collapsed surface is tall enough (at most 32) for that cap to
// change its radius; only an open one is.
double cornerRadius(NotchStyle style, double height, const Preferences &preferences);

// The radius a surface of `size` is outlined with: cornerRadius() for its height, no
// more than half its shorter side, and 0 (square corners) for a stored radius that is
// not a positive number. The window's shape, the drawn fill and the drag catcher's hit
// rule all take this one value, so what is drawn, what is clickable and where a drop
// lands agree.
double outlineRadius(NotchStyle style, Size size, const Preferences &preferences);

} // namespace ledgewise::NotchLayout
