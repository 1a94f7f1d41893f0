// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/shortcut_store.h"

namespace ledgewise::ApplicationShortcuts {

// Option + Space: toggle the left surface.
GlobalShortcuts::Name toggleLeft();
// Shift + Option + Space: toggle the right surface.
GlobalShortcuts::Name toggleRight();

// Makes both names known to the store, storing their defaults on a first start.
void declareAll(GlobalShortcuts::Store &store);

} // namespace ledgewise::ApplicationShortcuts
