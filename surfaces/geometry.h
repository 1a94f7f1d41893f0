// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace ledgewise {

struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size &, const Size &) = default;
};

// A rectangle in screen points with the origin at the bottom-left of the primary
// display and y growing upwards, so a display's top edge is its maxY. The layout rules
// are written in these coordinates; windows convert once, with toTopLeft().
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double minX() const { return x; }
    double maxX() const { return x + width; }
    double minY() const { return y; }
    double maxY() const { return y + height; }

    // Empty like a window system's null or zero-area rectangle: no width or no height.
    bool isEmpty() const { return width == 0 || height == 0; }

    // Component-wise and exact: two snapshots are "the same display" only when every
    // number agrees.
    friend bool operator==(const Rect &, const Rect &) = default;
};

// Converts between the layout's bottom-left coordinates and Qt's top-left ones.
// `primaryHeight` is the height of the primary screen, whose bottom-left corner is the
// layout origin (and whose top-left corner is Qt's).
inline QRectF toTopLeft(const Rect &rect, double primaryHeight)
{
    return QRectF(rect.x, primaryHeight - rect.maxY(), rect.width, rect.height);
}

inline Rect fromTopLeft(const QRectF &rect, double primaryHeight)
{
    return Rect { rect.x(), primaryHeight - rect.y() - rect.height(), rect.width(), rect.height() };
}

// The window system's whole-pixel rectangle for a layout rectangle. The layout takes the
// stored sizes as they are, and a stored record may hold any double (-1e300, NaN): here,
// where the numbers become ints, a number that is not finite counts as 0, a size below
// 0 as 0, and everything is kept within a range no screen reaches, so nothing overflows.
inline QRect toWindowRect(const Rect &rect, double primaryHeight)
{
    constexpr double reach = 1 << 24;
    const auto bounded = [](double value, double low, double high) {
        return std::isfinite(value) ? std::clamp(value, low, high) : 0.0;
    };
    const QRectF topLeft = toTopLeft(rect, primaryHeight);
    return QRectF(bounded(topLeft.x(), -reach, reach), bounded(topLeft.y(), -reach, reach),
        bounded(topLeft.width(), 0, reach), bounded(topLeft.height(), 0, reach))
        .toAlignedRect();
}

} // namespace ledgewise
