// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/key.h"

#include <QString>

#include <optional>

namespace ledgewise::GlobalShortcuts {

// What the user's keyboard layout types for a key with no modifiers held.
class KeyboardLayout
{
public:
    virtual ~KeyboardLayout() = default;
    // No value when the key types nothing printable.
    virtual std::optional<QString> text(Key key) const = 0;
};

// The US layout, for when no layout can be read from the window system.
class UsKeyboardLayout final : public KeyboardLayout
{
public:
    std::optional<QString> text(Key key) const override;
};

} // namespace ledgewise::GlobalShortcuts
