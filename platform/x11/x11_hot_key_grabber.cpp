// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/x11_hot_key_grabber.h"

#include "platform/x11/xcb_reply.h"

#include <QSocketNotifier>

#define explicit explicit_ // xkb.h names a member `explicit`
#include <xcb/xkb.h>
#undef explicit
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace ledgewise {

using GlobalShortcuts::EventType;
using GlobalShortcuts::HotKeyID;
using GlobalShortcuts::Shortcut;

namespace {

template <typename T, void (*Free)(T *)> struct Deleter {
    void operator()(T *pointer) const { Free(pointer); }
};

using Context = std::unique_ptr<xkb_context, Deleter<xkb_context, xkb_context_unref>>;
using KeymapHandle = std::unique_ptr<xkb_keymap, Deleter<xkb_keymap, xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Deleter<xkb_state, xkb_state_unref>>;

// The X server's own wording of the errors a grab can meet.
QString describeError(int code)
{
    switch (code) {
    case XCB_ACCESS:
        return QStringLiteral("BadAccess (attempt to access private resource denied)");
    case XCB_VALUE:
        return QStringLiteral("BadValue (integer parameter out of range for operation)");
    case XCB_WINDOW:
        return QStringLiteral("BadWindow (invalid Window parameter)");
    case XCB_ALLOC:
        return QStringLiteral("BadAlloc (insufficient resources for operation)");
    default:
        return QStringLiteral("X error %1").arg(code);
    }
}

// The first symbol a key types in `group` with no modifier held.
std::optional<xkb_keysym_t> symbolOf(xkb_keymap *keymap, xkb_keycode_t keycode, xkb_layout_index_t group)
{
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap, keycode);
    if (layouts == 0)
        return std::nullopt;
    const xkb_keysym_t *symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, group < layouts ? group : 0, 0, &symbols);
    if (count <= 0 || symbols[0] == XKB_KEY_NoSymbol)
        return std::nullopt;
    return symbols[0];
}

bool keyTypesAnyOf(xkb_keymap *keymap, xkb_keycode_t keycode, std::initializer_list<xkb_keysym_t> wanted)
{
    const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, keycode, 0);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, 0, level, &symbols);
        for (int i = 0; i < count; ++i) {
            for (const xkb_keysym_t symbol : wanted) {
                if (symbols[i] == symbol)
                    return true;
            }
        }
    }
    return false;
}

} // namespace

// The keymap in use, its active group and which real modifiers the keys we care about
// sit on (Alt is usually Mod1, Super Mod4, Num Lock Mod2; Scroll Lock often none).
struct X11HotKeyGrabber::Keyboard {
    KeymapHandle keymap;
    xkb_layout_index_t group = 0;
    quint16 alt = XCB_MOD_MASK_1;
    quint16 super = XCB_MOD_MASK_4;
    quint16 numLock = 0;
    quint16 scrollLock = 0;

    static std::unique_ptr<Keyboard> read(xcb_connection_t *connection)
    {
        const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
        Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
        if (device < 0 || !context)
            return nullptr;
        auto keyboard = std::make_unique<Keyboard>();
        keyboard->keymap.reset(
            xkb_x11_keymap_new_from_device(context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
        if (!keyboard->keymap)
            return nullptr;
        if (State state { xkb_x11_state_new_from_device(keyboard->keymap.get(), connection, device) })
            keyboard->group = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
        keyboard->readModifiers(connection);
        return keyboard;
    }

    void readModifiers(xcb_connection_t *connection)
    {
        XcbReply<xcb_get_modifier_mapping_reply_t> mapping(
            xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
        if (!mapping)
            return;
        const xcb_keycode_t *keycodes = xcb_get_modifier_mapping_keycodes(mapping.get());
        const int perModifier = mapping->keycodes_per_modifier;
        bool altFound = false, superFound = false;
        // Shift, Lock and Control are fixed; Mod1 to Mod5 are wherever the map puts them.
        for (int modifier = 3; modifier < 8; ++modifier) {
            const quint16 mask = quint16(1u << modifier);
            for (int i = 0; i < perModifier; ++i) {
                const xcb_keycode_t keycode = keycodes[modifier * perModifier + i];
                if (keycode == 0)
                    continue;
                xkb_keymap *map = keymap.get();
                if (!altFound && keyTypesAnyOf(map, keycode, { XKB_KEY_Alt_L, XKB_KEY_Alt_R, XKB_KEY_Meta_L })) {
                    alt = mask;
                    altFound = true;
                }
                if (!superFound && keyTypesAnyOf(map, keycode, { XKB_KEY_Super_L, XKB_KEY_Super_R })) {
                    super = mask;
                    superFound = true;
                }
                if (!numLock && keyTypesAnyOf(map, keycode, { XKB_KEY_Num_Lock }))
                    numLock = mask;
                if (!scrollLock && keyTypesAnyOf(map, keycode, { XKB_KEY_Scroll_Lock }))
                    scrollLock = mask;
            }
        }
    }

    // The real modifiers of a shortcut; no value when one of them has none here.
    std::optional<quint16> modifiersOf(quint32 flags) const
    {
        if (flags & GlobalShortcuts::functionFlag)
            return std::nullopt;
        quint16 modifiers = 0;
        if (flags & GlobalShortcuts::shiftFlag)
            modifiers |= XCB_MOD_MASK_SHIFT;
        if (flags & GlobalShortcuts::controlFlag)
            modifiers |= XCB_MOD_MASK_CONTROL;
        if (flags & GlobalShortcuts::optionFlag)
            modifiers |= alt;
        if (flags & GlobalShortcuts::commandFlag)
            modifiers |= super;
        return modifiers;
    }

    // Every key that types what the shortcut's physical key types in the active group.
    QList<quint8> keycodesOf(GlobalShortcuts::Key key) const
    {
        const auto evdev = GlobalShortcuts::evdevCode(key);
        if (!evdev)
            return {};
        const auto symbol = symbolOf(keymap.get(), xkb_keycode_t(*evdev + 8), group);
        if (!symbol)
            return {};
        QList<quint8> keycodes;
        const xkb_keycode_t last = qMin<xkb_keycode_t>(xkb_keymap_max_keycode(keymap.get()), 255);
        for (xkb_keycode_t keycode = xkb_keymap_min_keycode(keymap.get()); keycode <= last; ++keycode) {
            if (symbolOf(keymap.get(), keycode, group) == symbol)
                keycodes.append(quint8(keycode));
        }
        return keycodes;
    }
};

X11HotKeyGrabber::X11HotKeyGrabber(QObject *parent)
    : QObject(parent)
{
    m_connection = xcb_connect(nullptr, nullptr);
    if (!m_connection || xcb_connection_has_error(m_connection))
        return;
    uint8_t firstEvent = 0;
    if (!xkb_x11_setup_xkb_extension(m_connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr))
        return;
    m_xkbEvent = firstEvent;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;

    // Without this a held key sends a release before each repeated press, and a
    // shortcut acting on release would fire over and over.
    const uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    XcbReply<xcb_xkb_per_client_flags_reply_t> { xcb_xkb_per_client_flags_reply(m_connection,
        xcb_xkb_per_client_flags(m_connection, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0), nullptr) };

    // Told of a new keyboard, a new map and a switch of group, to take the keys again.
    const uint16_t events
        = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    const uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details {};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(m_connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, 0, mapParts, mapParts, &details);

    m_keyboard = Keyboard::read(m_connection);
    if (!m_keyboard)
        return;
    xcb_flush(m_connection);
    m_notifier = new QSocketNotifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &X11HotKeyGrabber::readEvents);
}

X11HotKeyGrabber::~X11HotKeyGrabber()
{
    delete m_notifier;
    // Closing the connection gives its grabs back to the server.
    if (m_connection)
        xcb_disconnect(m_connection);
}

std::optional<QString> X11HotKeyGrabber::grab(const Shortcut &shortcut, HotKeyID id)
{
    if (!isActive())
        return QStringLiteral("no X display with the keyboard extension");
    ungrab(id);
    Grab grab { id, shortcut, {}, 0 };
    if (const auto refused = take(grab))
        return refused;
    m_grabs.append(grab);
    return std::nullopt;
}

void X11HotKeyGrabber::ungrab(HotKeyID id)
{
    for (qsizetype i = 0; i < m_grabs.size(); ++i) {
        if (m_grabs[i].id == id) {
            m_pressed.removeIf([id](const auto &pressed) { return pressed.value() == id; });
            release(m_grabs.takeAt(i));
            xcb_flush(m_connection);
            return;
        }
    }
}

std::optional<Shortcut> X11HotKeyGrabber::shortcutFor(quint32 keycode, quint32 modifierState) const
{
    const auto key = keycode >= 8 ? GlobalShortcuts::keyForEvdevCode(int(keycode) - 8) : std::nullopt;
    if (!key)
        return std::nullopt;
    const quint16 alt = m_keyboard ? m_keyboard->alt : quint16(XCB_MOD_MASK_1);
    const quint16 super = m_keyboard ? m_keyboard->super : quint16(XCB_MOD_MASK_4);
    quint32 flags = 0;
    if (modifierState & XCB_MOD_MASK_SHIFT)
        flags |= GlobalShortcuts::shiftFlag;
    if (modifierState & XCB_MOD_MASK_CONTROL)
        flags |= GlobalShortcuts::controlFlag;
    if (modifierState & alt)
        flags |= GlobalShortcuts::optionFlag;
    if (modifierState & super)
        flags |= GlobalShortcuts::commandFlag;
    return Shortcut(*key, flags);
}

std::optional<QString> X11HotKeyGrabber::take(Grab &grab)
{
    const auto modifiers = m_keyboard->modifiersOf(grab.shortcut.modifiers());
    if (!modifiers)
        return QStringLiteral("the function key is no modifier on this keyboard");
    grab.modifiers = *modifiers;
    grab.keycodes = m_keyboard->keycodesOf(grab.shortcut.key());
    if (grab.keycodes.isEmpty())
        return QStringLiteral("no key for code %1 in the current keyboard layout").arg(grab.shortcut.carbonKeyCode);

    // Every grab is checked: one that another client holds fails alone, and then the
    // others are given back so that nothing of the shortcut stays half taken.
    QList<xcb_void_cookie_t> cookies;
    for (const quint8 keycode : std::as_const(grab.keycodes)) {
        for (const quint16 locks : lockVariants()) {
            cookies.append(xcb_grab_key_checked(
                m_connection, 0, m_root, grab.modifiers | locks, keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
    }
    std::optional<QString> refused;
    for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
        if (const XcbReply<xcb_generic_error_t> error { xcb_request_check(m_connection, cookie) }) {
            if (!refused)
                refused = describeError(error->error_code);
        }
    }
    if (refused) {
        release(grab);
        xcb_flush(m_connection);
    }
    return refused;
}

void X11HotKeyGrabber::release(const Grab &grab)
{
    // Ungrabbing a combination some other client holds leaves that client's grab alone.
    for (const quint8 keycode : grab.keycodes) {
        for (const quint16 locks : lockVariants())
            xcb_ungrab_key(m_connection, keycode, m_root, grab.modifiers | locks);
    }
}

QList<quint16> X11HotKeyGrabber::lockVariants() const
{
    const quint16 locks[] = { XCB_MOD_MASK_LOCK, m_keyboard->numLock, m_keyboard->scrollLock };
    QList<quint16> variants = { 0 };
    for (const quint16 lock : locks) {
        if (lock == 0 || (variants.constLast() & lock))
            continue;
        const qsizetype count = variants.size();
        for (qsizetype i = 0; i < count; ++i)
            variants.append(variants[i] | lock);
    }
    return variants;
}

void X11HotKeyGrabber::readEvents()
{
    while (const XcbReply<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) })
        handle(event.get());
}

void X11HotKeyGrabber::handle(const void *data)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(data);
    const uint8_t type = event->response_type & 0x7f;
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event);
        deliverKey(key->detail, key->state, type == XCB_KEY_PRESS ? EventType::keyDown : EventType::keyUp);
    } else if (type == XCB_MAPPING_NOTIFY) {
        keyboardMapChanged();
    } else if (type == m_xkbEvent) {
        // All keyboard-extension events share one code; the second byte tells which.
        const uint8_t xkbType = reinterpret_cast<const uint8_t *>(event)[1];
        if (xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || xkbType == XCB_XKB_MAP_NOTIFY) {
            keyboardMapChanged();
        } else if (xkbType == XCB_XKB_STATE_NOTIFY) {
            const auto *state = reinterpret_cast<const xcb_xkb_state_notify_event_t *>(event);
            if (state->group != m_keyboard->group) {
                m_keyboard->group = state->group;
                takeAllAgain();
            }
        }
    }
}

void X11HotKeyGrabber::deliverKey(quint8 keycode, quint16 state, EventType type)
{
    // The key's release belongs to the shortcut its press was, whatever is still held:
    // people let go of Alt before Space as often as after.
    if (type == EventType::keyUp) {
        const auto pressed = m_pressed.find(keycode);
        if (pressed == m_pressed.end())
            return;
        const HotKeyID id = pressed.value();
        m_pressed.erase(pressed);
        if (delivered)
            delivered(id, type);
        return;
    }
    // Only the eight core modifiers count (the keyboard extension puts the group in
    // the bits above), and the locks never do.
    const quint16 locks = XCB_MOD_MASK_LOCK | m_keyboard->numLock | m_keyboard->scrollLock;
    const quint16 modifiers = state & 0xff & ~locks;
    for (const Grab &grab : std::as_const(m_grabs)) {
        if (grab.modifiers == modifiers && grab.keycodes.contains(keycode)) {
            const HotKeyID id = grab.id; // the handler may ungrab
            m_pressed.insert(keycode, id);
            if (delivered)
                delivered(id, type);
            return;
        }
    }
}

void X11HotKeyGrabber::keyboardMapChanged()
{
    if (auto keyboard = Keyboard::read(m_connection)) {
        // The grabs were made under the old map's modifiers and keys: give those back
        // before the new map is used.
        for (const Grab &grab : std::as_const(m_grabs))
            release(grab);
        m_keyboard = std::move(keyboard);
        for (Grab &grab : m_grabs)
            grab.keycodes.clear();
        takeAllAgain();
    }
}

void X11HotKeyGrabber::takeAllAgain()
{
    QList<Grab> grabs = std::exchange(m_grabs, {});
    QList<std::pair<HotKeyID, QString>> lostGrabs;
    for (Grab &grab : grabs) {
        release(grab);
        if (const auto refused = take(grab))
            lostGrabs.append({ grab.id, *refused });
        else
            m_grabs.append(grab);
    }
    xcb_flush(m_connection);
    for (const auto &[id, reason] : lostGrabs) {
        if (lost)
            lost(id, reason);
    }
    emit keyboardChanged();
}

} // namespace ledgewise
