// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "surfaces/geometry.h"

namespace ledgewise {

// One display's geometry at one moment, in layout coordinates. Taken from a screen by
// the platform layer; everything else only reads it.
struct DisplaySnapshot {
    Rect frame;
    Rect visibleFrame; // less the top panel and docks
    Rect auxiliaryTopLeft; // the strip left of the notch; empty without a notch
    Rect auxiliaryTopRight; // the strip right of the notch; empty without a notch
    double safeAreaTop = 0; // the notch's depth, 0 without one
    double menuBarHeight = 0; // the top panel's thickness

    // A display counts as notched when it reports a strip beside a notch, or a safe
    // area more than one point deeper than the top panel (a safe area merely as deep
    // as the panel is not a notch).
    bool isNotched() const
    {
        return !auxiliaryTopLeft.isEmpty() || !auxiliaryTopRight.isEmpty() || safeAreaTop > menuBarHeight + 1;
    }

    friend bool operator==(const DisplaySnapshot &, const DisplaySnapshot &) = default;
};

} // namespace ledgewise
