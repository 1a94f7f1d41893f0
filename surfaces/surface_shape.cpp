// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_shape.h"

#include <QPainterPath>
#include <QPolygon>
#include <QRect>

#include <algorithm>

namespace ledgewise {

QRegion roundedRegion(const QSize &size, double radius)
{
    // A stored radius may be any double: one that is not a number gives square corners.
    if (!(radius > 0))
        return QRegion(QRect(QPoint(0, 0), size));
    const double r = std::min({ radius, size.width() / 2.0, size.height() / 2.0 });
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), r, r);
    return QRegion(path.toFillPolygon().toPolygon());
}

} // namespace ledgewise
