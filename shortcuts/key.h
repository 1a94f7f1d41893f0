// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace ledgewise::GlobalShortcuts {

// A key by its hardware-independent virtual key code: the stored form of a shortcut
// keeps these codes, so a shortcut means the same physical key on every machine.
// Any code can be held; the named ones are the keys of the standard layout.
enum class Key : int {
    a = 0x00, s = 0x01, d = 0x02, f = 0x03, h = 0x04, g = 0x05, z = 0x06, x = 0x07, c = 0x08, v = 0x09,
    section = 0x0A, b = 0x0B, q = 0x0C, w = 0x0D, e = 0x0E, r = 0x0F, y = 0x10, t = 0x11,
    one = 0x12, two = 0x13, three = 0x14, four = 0x15, six = 0x16, five = 0x17, equal = 0x18, nine = 0x19,
    seven = 0x1A, minus = 0x1B, eight = 0x1C, zero = 0x1D, rightBracket = 0x1E, o = 0x1F, u = 0x20,
    leftBracket = 0x21, i = 0x22, p = 0x23, returnKey = 0x24, l = 0x25, j = 0x26, quote = 0x27, k = 0x28,
    semicolon = 0x29, backslash = 0x2A, comma = 0x2B, slash = 0x2C, n = 0x2D, m = 0x2E, period = 0x2F,
    tab = 0x30, space = 0x31, backtick = 0x32, deleteKey = 0x33, escape = 0x35,
    command = 0x37, shift = 0x38, capsLock = 0x39, option = 0x3A, control = 0x3B, rightCommand = 0x36,
    rightShift = 0x3C, rightOption = 0x3D, rightControl = 0x3E, function = 0x3F,
    f17 = 0x40, keypadDecimal = 0x41, keypadMultiply = 0x43, keypadPlus = 0x45, keypadClear = 0x47,
    volumeUp = 0x48, volumeDown = 0x49, mute = 0x4A, keypadDivide = 0x4B, keypadEnter = 0x4C,
    keypadMinus = 0x4E, f18 = 0x4F, f19 = 0x50, keypadEquals = 0x51,
    keypad0 = 0x52, keypad1 = 0x53, keypad2 = 0x54, keypad3 = 0x55, keypad4 = 0x56, keypad5 = 0x57,
    keypad6 = 0x58, keypad7 = 0x59, f20 = 0x5A, keypad8 = 0x5B, keypad9 = 0x5C,
    yen = 0x5D, underscore = 0x5E, keypadComma = 0x5F,
    f5 = 0x60, f6 = 0x61, f7 = 0x62, f3 = 0x63, f8 = 0x64, f9 = 0x65, eisu = 0x66, f11 = 0x67, kana = 0x68,
    f13 = 0x69, f16 = 0x6A, f14 = 0x6B, f10 = 0x6D, f12 = 0x6F, f15 = 0x71,
    help = 0x72, home = 0x73, pageUp = 0x74, deleteForward = 0x75, f4 = 0x76, end = 0x77, f2 = 0x78,
    pageDown = 0x79, f1 = 0x7A, leftArrow = 0x7B, rightArrow = 0x7C, downArrow = 0x7D, upArrow = 0x7E,
};

// The Linux input (evdev) code of the same physical key, and back; an X11 keycode is
// the evdev code + 8. No value for codes without a key on a PC keyboard.
std::optional<int> evdevCode(Key key);
std::optional<Key> keyForEvdevCode(int evdev);

// Whether a key is named (its special name or F-number) rather than shown as the
// character the keyboard layout gives it.
bool isSpecialKey(Key key);
// "F1" .. "F20" for the function keys; no value for other keys.
std::optional<int> functionKeyNumber(Key key);

} // namespace ledgewise::GlobalShortcuts
