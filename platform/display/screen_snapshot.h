// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/display/notch_detection.h"
#include "surfaces/display_snapshot.h"

#include <QRect>

#include <optional>

class QScreen;

namespace ledgewise {

// The geometry the layout needs, read from Qt's screens.
struct ScreenGeometry {
    QRect geometry; // the whole screen, Qt coordinates
    QRect availableGeometry; // less panels and docks
};

// Pure: a snapshot from the screen's geometry, the primary screen's (whose bottom-left
// corner is the layout's origin, and whose top inset is the top panel's thickness for
// every snapshot) and the screen's notch, if it has one.
DisplaySnapshot makeDisplaySnapshot(
    const ScreenGeometry &screen, const ScreenGeometry &primary, const std::optional<NotchSize> &notch);

// A snapshot of a live screen. The notch comes from LEDGEWISE_NOTCH (primary screen
// only), otherwise from detection on the built-in panel; other screens have none.
DisplaySnapshot snapshotOf(const QScreen &screen);

// Whether a screen is a laptop's own panel, judged by its output name.
bool isBuiltInPanel(const QScreen &screen);

} // namespace ledgewise
