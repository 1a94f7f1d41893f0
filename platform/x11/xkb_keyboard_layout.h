#pragma once

#include "shortcuts/keyboard_layout.h"

#include <memory>

namespace ledgewise {

// The keyboard layout the X server uses right now (its active group), read through
// xkbcommon. Falls back to the US layout when there is no X server to ask.
class XkbKeyboardLayout final : public GlobalShortcuts::KeyboardLayout
{
public:
    XkbKeyboardLayout();
    ~XkbKeyboardLayout() override;

    // Whether the server's keymap could be read; false means the US fallback answers.
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
