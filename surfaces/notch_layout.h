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
Rect frame(NotchSide side, NotchPresentation presentation, const Preferences &preferences,
           const DisplaySnapshot &display);

// Shrinks `rect` to fit `bounds`, then moves it inside: left edge first, then right,
// then bottom, then top, in that order.
Rect clamp(Rect rect, const Rect &bounds);

// The corner radius of a surface `height` points tall.
double cornerRadius(NotchStyle style, double height, const Preferences &preferences);

} // namespace ledgewise::NotchLayout
