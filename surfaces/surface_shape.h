// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRegion>
#include <QSize>

namespace ledgewise {

// A surface's rounded outline as a window shape, with its origin at the top-left
// corner. A radius of 0 or less gives the whole rectangle; like any rounded rectangle,
// a radius beyond half the shorter side gives a capsule.
QRegion roundedRegion(const QSize &size, double radius);

} // namespace ledgewise
