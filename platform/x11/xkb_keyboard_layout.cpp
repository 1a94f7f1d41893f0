// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/xkb_keyboard_layout.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace ledgewise {

namespace {

template <typename T, void (*Free)(T *)> struct Deleter {
    void operator()(T *pointer) const { Free(pointer); }
};

using Connection = std::unique_ptr<xcb_connection_t, Deleter<xcb_connection_t, xcb_disconnect>>;
using Context = std::unique_ptr<xkb_context, Deleter<xkb_context, xkb_context_unref>>;
using KeymapHandle = std::unique_ptr<xkb_keymap, Deleter<xkb_keymap, xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Deleter<xkb_state, xkb_state_unref>>;

// The letter keys: a group that types ASCII on all of them is one a shortcut can be
// read in (German or French qualify, Russian or Greek do not).
constexpr GlobalShortcuts::Key letterKeys[] = {
    GlobalShortcuts::Key::a,
    GlobalShortcuts::Key::b,
    GlobalShortcuts::Key::c,
    GlobalShortcuts::Key::d,
    GlobalShortcuts::Key::e,
    GlobalShortcuts::Key::f,
    GlobalShortcuts::Key::g,
    GlobalShortcuts::Key::h,
    GlobalShortcuts::Key::i,
    GlobalShortcuts::Key::j,
    GlobalShortcuts::Key::k,
    GlobalShortcuts::Key::l,
    GlobalShortcuts::Key::m,
    GlobalShortcuts::Key::n,
    GlobalShortcuts::Key::o,
    GlobalShortcuts::Key::p,
    GlobalShortcuts::Key::q,
    GlobalShortcuts::Key::r,
    GlobalShortcuts::Key::s,
    GlobalShortcuts::Key::t,
    GlobalShortcuts::Key::u,
    GlobalShortcuts::Key::v,
    GlobalShortcuts::Key::w,
    GlobalShortcuts::Key::x,
    GlobalShortcuts::Key::y,
    GlobalShortcuts::Key::z,
};

std::optional<QString> typedText(xkb_state *state, GlobalShortcuts::Key key)
{
    const auto evdev = GlobalShortcuts::evdevCode(key);
    if (!evdev)
        return std::nullopt;
    char buffer[64] = {};
    const int length = xkb_state_key_get_utf8(state, xkb_keycode_t(*evdev + 8), buffer, sizeof buffer);
    if (length <= 0)
        return std::nullopt;
    return QString::fromUtf8(buffer, qMin(length, int(sizeof buffer) - 1));
}

bool typesAscii(xkb_state *state)
{
    for (const GlobalShortcuts::Key key : letterKeys) {
        const auto text = typedText(state, key);
        if (!text)
            return false;
        for (const QChar c : *text) {
            if (c.unicode() < 0x20 || c.unicode() > 0x7e)
                return false;
        }
    }
    return true;
}

State modifierFreeState(xkb_keymap *keymap, xkb_layout_index_t group)
{
    State state(xkb_state_new(keymap));
    if (state)
        xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
    return state;
}

} // namespace

// The keymap and a modifier-free state on the active group, read once per reload.
struct XkbKeyboardLayout::Keymap {
    KeymapHandle keymap;
    State state;
};

XkbKeyboardLayout::XkbKeyboardLayout()
{
    reload();
}

XkbKeyboardLayout::~XkbKeyboardLayout() = default;

bool XkbKeyboardLayout::isLive() const
{
    return m_keymap != nullptr;
}

void XkbKeyboardLayout::reload()
{
    m_keymap.reset();
    Connection connection(xcb_connect(nullptr, nullptr));
    if (!connection || xcb_connection_has_error(connection.get()))
        return;
    if (!xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return;
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection.get());
    Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (device < 0 || !context)
        return;
    KeymapHandle keymap(
        xkb_x11_keymap_new_from_device(context.get(), connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap)
        return;
    // The server's state tells the active group; the text is read with no modifiers.
    // Shortcuts are shown in an ASCII-capable layout: the active group when it is one,
    // else the first configured group that is (a "ru,us" user sees ⌘Q, not ⌘Й), else
    // the US table.
    State serverState(xkb_x11_state_new_from_device(keymap.get(), connection.get(), device));
    if (!serverState)
        return;
    const xkb_layout_index_t active = xkb_state_serialize_layout(serverState.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    State state = modifierFreeState(keymap.get(), active);
    if (state && typesAscii(state.get())) {
        m_keymap = std::make_unique<Keymap>(Keymap { std::move(keymap), std::move(state) });
        return;
    }
    const xkb_layout_index_t groups = xkb_keymap_num_layouts(keymap.get());
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        state = modifierFreeState(keymap.get(), group);
        if (group != active && state && typesAscii(state.get())) {
            m_keymap = std::make_unique<Keymap>(Keymap { std::move(keymap), std::move(state) });
            return;
        }
    }
}

std::optional<QString> XkbKeyboardLayout::text(GlobalShortcuts::Key key) const
{
    if (!m_keymap)
        return m_fallback.text(key);
    const auto text = typedText(m_keymap->state.get(), key);
    // Tab, Return and the like type control characters, which are not shown.
    if (!text || (text->size() == 1 && text->at(0).category() == QChar::Other_Control))
        return std::nullopt;
    return text;
}

} // namespace ledgewise
