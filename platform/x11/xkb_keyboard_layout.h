// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/keyboard_layout.h"

#include <memory>

namespace ledgewise {

// The keyboard layout the X server uses right now (its active group, or the first
// configured group that types ASCII letters when the active one does not), read
// through xkbcommon. Falls back to the US layout when there is no X server to ask or
// no configured layout types ASCII.
class XkbKeyboardLayout final : public GlobalShortcuts::KeyboardLayout
{
public:
    XkbKeyboardLayout();
    ~XkbKeyboardLayout() override;

    // Whether a layout of the server answers; false means the US fallback does.
    bool isLive() const;
    // Reads the server's keymap again, after the user switched layouts.
    void reload();

    std::optional<QString> text(GlobalShortcuts::Key key) const override;

private:
    struct Keymap;
    std::unique_ptr<Keymap> m_keymap;
    GlobalShortcuts::UsKeyboardLayout m_fallback;
};

} // namespace ledgewise
