// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_layout.h"

#include <algorithm>

namespace ledgewise::NotchLayout {

Size baseSize(NotchStyle style)
{
    switch (style) {
    case NotchStyle::classic:
        return { 84, 30 };
    case NotchStyle::pill:
        return { 76, 28 };
    case NotchStyle::minimal:
        return { 64, 22 };
    }
    return { 76, 28 };
}

Size size(NotchPresentation presentation, const Preferences &preferences)
{
    const Size base = baseSize(preferences.style);
    switch (presentation) {
    case NotchPresentation::sleeping:
        return base;
    case NotchPresentation::glance:
        return { std::max(base.width + 86, 148.0), base.height + 2 };
    case NotchPresentation::active:
        return { std::max(base.width + 48, 120.0), base.height + 2 };
    case NotchPresentation::expanded:
        return { preferences.width, preferences.height };
    }
    return base;
}

Rect frame(
    NotchSide side, NotchPresentation presentation, const Preferences &preferences, const DisplaySnapshot &display)
{
    const Size s = size(presentation, preferences);
    const bool notched = display.isNotched();
    const double n = preferences.offsetFromNotch;
    const double e = preferences.offsetFromEdge;

    double x = 0;
    if (side == NotchSide::left) {
        x = notched && !display.auxiliaryTopLeft.isEmpty() ? display.auxiliaryTopLeft.maxX() - n - s.width
                                                           : display.frame.minX() + e;
    } else {
        x = notched && !display.auxiliaryTopRight.isEmpty() ? display.auxiliaryTopRight.minX() + n
                                                            : display.frame.maxX() - e - s.width;
    }
    const double y = display.frame.maxY() - s.height;
    return clamp(Rect { x, y, s.width, s.height }, display.frame);
}

Rect clamp(Rect rect, const Rect &bounds)
{
    rect.width = std::min(rect.width, bounds.width);
    rect.height = std::min(rect.height, bounds.height);
    if (rect.minX() < bounds.minX())
        rect.x = bounds.minX();
    if (rect.maxX() > bounds.maxX())
        rect.x = bounds.maxX() - rect.width;
    if (rect.minY() < bounds.minY())
        rect.y = bounds.minY();
    if (rect.maxY() > bounds.maxY())
        rect.y = bounds.maxY() - rect.height;
    return rect;
}

namespace {

double styleRadius(NotchStyle style, double height, const Preferences &preferences)
{
    switch (style) {
    case NotchStyle::classic:
        return preferences.cornerRadius;
    case NotchStyle::pill:
        return height * 0.5;
    case NotchStyle::minimal:
        return std::min(height * 0.5, 10.0);
    }
    return preferences.cornerRadius;
}

} // namespace

double cornerRadius(NotchStyle style, double height, const Preferences &preferences)
{
    // A stored radius that is not a number passes through as it is: outlineRadius()
    // turns it into square corners.
    const double radius = styleRadius(style, height, preferences);
    return radius > maximumCornerRadius ? maximumCornerRadius : radius;
}

double outlineRadius(NotchStyle style, Size size, const Preferences &preferences)
{
    const double radius = std::min({ cornerRadius(style, size.height, preferences), size.width / 2, size.height / 2 });
    return radius > 0 ? radius : 0;
}

} // namespace ledgewise::NotchLayout
