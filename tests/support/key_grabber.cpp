// Another X client that wants a key combination for itself, as a desktop's own
// shortcut daemon would: it grabs KEYSYM (a number, such as 0x20 for space) with the
// modifier mask MODIFIERS on the root window, prints "grabbed" or "refused", then
// prints "pressed" for each press it receives until it is ended.
// Usage: key_grabber KEYSYM MODIFIERS
// With --keyboard it asks for the whole keyboard instead, prints "grabbed" or
// "refused" (another client holds it, as an open menu does) and ends at once.

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

static int grabKeyboard()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_grab_keyboard_reply_t *reply = xcb_grab_keyboard_reply(
        connection,
        xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr);
    const bool grabbed = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    std::free(reply);
    std::puts(grabbed ? "grabbed" : "refused");
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_disconnect(connection);
    return grabbed ? 0 : 1;
}

int main(int argc, char *argv[])
{
    if (argc == 2 && std::strcmp(argv[1], "--keyboard") == 0)
        return grabKeyboard();
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
    xcb_generic_error_t *error = xcb_request_check(
        connection, xcb_grab_key_checked(connection, 0, root, modifiers, keycodes[0], XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_ASYNC));
    std::free(keycodes);
    xcb_key_symbols_free(symbols);
    if (error) {
        std::printf("refused %d\n", error->error_code);
        std::fflush(stdout);
        std::free(error);
        return 1;
    }
    std::puts("grabbed");
    std::fflush(stdout);
    while (xcb_generic_event_t *event = xcb_wait_for_event(connection)) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            std::puts("pressed");
            std::fflush(stdout);
        }
        std::free(event);
    }
    xcb_disconnect(connection);
    return 0;
}
