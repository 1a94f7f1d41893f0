#include "platform/x11/xkb_keyboard_layout.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace ledgewise {

namespace {

template <typename T, void (*Free)(T *)>
struct Deleter {
    void operator()(T *pointer) const { Free(pointer); }
};

using Connection = std::unique_ptr<xcb_connection_t, Deleter<xcb_connection_t, xcb_disconnect>>;
using Context = std::unique_ptr<xkb_context, Deleter<xkb_context, xkb_context_unref>>;
using KeymapHandle = std::unique_ptr<xkb_keymap, Deleter<xkb_keymap, xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Deleter<xkb_state, xkb_state_unref>>;

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
    if (!xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                     XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                     nullptr, nullptr, nullptr, nullptr))
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
    State serverState(xkb_x11_state_new_from_device(keymap.get(), connection.get(), device));
    State state(xkb_state_new(keymap.get()));
    if (!serverState || !state)
        return;
    const xkb_layout_index_t group = xkb_state_serialize_layout(serverState.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
    m_keymap = std::make_unique<Keymap>(Keymap{std::move(keymap), std::move(state)});
}

std::optional<QString> XkbKeyboardLayout::text(GlobalShortcuts::Key key) const
{
    if (!m_keymap)
        return m_fallback.text(key);
    const auto evdev = GlobalShortcuts::evdevCode(key);
    if (!evdev)
        return std::nullopt;
    char buffer[64] = {};
    const int length = xkb_state_key_get_utf8(m_keymap->state.get(), xkb_keycode_t(*evdev + 8), buffer, sizeof buffer);
    if (length <= 0)
        return std::nullopt;
    const QString text = QString::fromUtf8(buffer, qMin(length, int(sizeof buffer) - 1));
    // Tab, Return and the like type control characters, which are not shown.
    if (text.size() == 1 && text.at(0).category() == QChar::Other_Control)
        return std::nullopt;
    return text;
}

} // namespace ledgewise
