#pragma once

#include <QRectF>

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
    return Rect{rect.x(), primaryHeight - rect.y() - rect.height(), rect.width(), rect.height()};
}

} // namespace ledgewise
