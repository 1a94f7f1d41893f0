// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/keyboard_layout.h"
#include "shortcuts/shortcut.h"

#include <QString>

namespace ledgewise::GlobalShortcuts {

// The modifier symbols, always in this order: control, option, shift, command, function.
QString modifierSymbols(quint32 modifierFlags);

// The name a special key is shown by ("Space", "↩", "F5"...); no value for other keys.
std::optional<QString> specialKeyName(Key key);

// How a shortcut reads in menus and settings: "⇧⌘L", "⌥Space". A key that is not
// special is shown as the layout types it, first letter upper case.
QString presentableDescription(const Shortcut &shortcut, const KeyboardLayout &layout);

} // namespace ledgewise::GlobalShortcuts
