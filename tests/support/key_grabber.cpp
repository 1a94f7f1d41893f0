// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Another X client that wants a key combination for itself, as a desktop's own
// shortcut daemon would: it grabs KEYSYM (a number, such as 0x20 for space) with the
// modifier mask MODIFIERS on the root window, prints "grabbed" or "refused", then
// prints "pressed" for each press it receives until it is ended.
// Usage: key_grabber KEYSYM MODIFIERS
// With --keyboard it asks for the whole keyboard instead, prints "grabbed" or
// "refused" (another client holds it, as an open menu does) and ends at once.
// With --group it prints the number of the keyboard layout group in use (0 is the
// first) and ends; with --lock-group N it switches to group N, as a layout switcher
// does, and ends.

#include "platform/x11/xcb_reply.h"

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#define explicit explicit_ // xkb.h names a member `explicit`
#include <xcb/xkb.h>
#undef explicit

#include <cstdio>
#include <cstdlib>
#include <cstring>

static int printGroup()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)
        || !xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return 1;
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap *keymap = xkb_x11_keymap_new_from_device(context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_state *state = keymap ? xkb_x11_state_new_from_device(keymap, connection, device) : nullptr;
    if (!state)
        return 1;
    std::printf("%u\n", xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
    xkb_state_unref(state);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
    xcb_disconnect(connection);
    return 0;
}

static int lockGroup(int group)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)
        || !xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return 1;
    const ledgewise::XcbReply<xcb_generic_error_t> error { xcb_request_check(connection,
        xcb_xkb_latch_lock_state_checked(
            connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, xcb_xkb_group_t(group), 0, 0, 0)) };
    xcb_disconnect(connection);
    return error ? 1 : 0;
}

static int grabKeyboard()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ledgewise::XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(connection,
        xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
    const bool grabbed = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    std::puts(grabbed ? "grabbed" : "refused");
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_disconnect(connection);
    return grabbed ? 0 : 1;
}

int main(int argc, char *argv[])
{
    if (argc == 2 && std::strcmp(argv[1], "--keyboard") == 0)
        return grabKeyboard();
    if (argc == 2 && std::strcmp(argv[1], "--group") == 0)
        return printGroup();
    if (argc == 3 && std::strcmp(argv[1], "--lock-group") == 0)
        return lockGroup(std::atoi(argv[2]));
    if (argc != 3) {
        std::fputs("usage: key_grabber KEYSYM MODIFIERS\n", stderr);
        return 2;
    }
    const xcb_keysym_t keysym = xcb_keysym_t(std::strtoul(argv[1], nullptr, 0));
    const uint16_t modifiers = uint16_t(std::strtoul(argv[2], nullptr, 0));
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    xcb_keycode_t *keycodes = xcb_key_symbols_get_keycode(symbols, keysym);
    if (!keycodes || keycodes[0] == XCB_NO_SYMBOL) {
        std::puts("refused no key");
        return 1;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ledgewise::XcbReply<xcb_generic_error_t> error { xcb_request_check(connection,
        xcb_grab_key_checked(connection, 0, root, modifiers, keycodes[0], XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)) };
    std::free(keycodes);
    xcb_key_symbols_free(symbols);
    if (error) {
        std::printf("refused %d\n", error->error_code);
        std::fflush(stdout);
        return 1;
    }
    std::puts("grabbed");
    std::fflush(stdout);
    while (const ledgewise::XcbReply<xcb_generic_event_t> event { xcb_wait_for_event(connection) }) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            std::puts("pressed");
            std::fflush(stdout);
        }
    }
    xcb_disconnect(connection);
    return 0;
}
