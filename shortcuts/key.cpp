// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/key.h"

#include <array>
#include <utility>

namespace ledgewise::GlobalShortcuts {

namespace {

// Virtual key code → evdev code (linux/input-event-codes.h), by physical position.
constexpr std::pair<Key, int> evdevTable[] = {
    { Key::escape, 1 },
    { Key::one, 2 },
    { Key::two, 3 },
    { Key::three, 4 },
    { Key::four, 5 },
    { Key::five, 6 },
    { Key::six, 7 },
    { Key::seven, 8 },
    { Key::eight, 9 },
    { Key::nine, 10 },
    { Key::zero, 11 },
    { Key::minus, 12 },
    { Key::equal, 13 },
    { Key::deleteKey, 14 },
    { Key::tab, 15 },
    { Key::q, 16 },
    { Key::w, 17 },
    { Key::e, 18 },
    { Key::r, 19 },
    { Key::t, 20 },
    { Key::y, 21 },
    { Key::u, 22 },
    { Key::i, 23 },
    { Key::o, 24 },
    { Key::p, 25 },
    { Key::leftBracket, 26 },
    { Key::rightBracket, 27 },
    { Key::returnKey, 28 },
    { Key::control, 29 },
    { Key::a, 30 },
    { Key::s, 31 },
    { Key::d, 32 },
    { Key::f, 33 },
    { Key::g, 34 },
    { Key::h, 35 },
    { Key::j, 36 },
    { Key::k, 37 },
    { Key::l, 38 },
    { Key::semicolon, 39 },
    { Key::quote, 40 },
    { Key::backtick, 41 },
    { Key::shift, 42 },
    { Key::backslash, 43 },
    { Key::z, 44 },
    { Key::x, 45 },
    { Key::c, 46 },
    { Key::v, 47 },
    { Key::b, 48 },
    { Key::n, 49 },
    { Key::m, 50 },
    { Key::comma, 51 },
    { Key::period, 52 },
    { Key::slash, 53 },
    { Key::rightShift, 54 },
    { Key::keypadMultiply, 55 },
    { Key::option, 56 },
    { Key::space, 57 },
    { Key::capsLock, 58 },
    { Key::f1, 59 },
    { Key::f2, 60 },
    { Key::f3, 61 },
    { Key::f4, 62 },
    { Key::f5, 63 },
    { Key::f6, 64 },
    { Key::f7, 65 },
    { Key::f8, 66 },
    { Key::f9, 67 },
    { Key::f10, 68 },
    // The keypad's clear key sits where a PC keyboard has Num Lock.
    { Key::keypadClear, 69 },
    { Key::keypad7, 71 },
    { Key::keypad8, 72 },
    { Key::keypad9, 73 },
    { Key::keypadMinus, 74 },
    { Key::keypad4, 75 },
    { Key::keypad5, 76 },
    { Key::keypad6, 77 },
    { Key::keypadPlus, 78 },
    { Key::keypad1, 79 },
    { Key::keypad2, 80 },
    { Key::keypad3, 81 },
    { Key::keypad0, 82 },
    { Key::keypadDecimal, 83 },
    { Key::section, 86 },
    { Key::f11, 87 },
    { Key::f12, 88 },
    { Key::underscore, 89 },
    { Key::keypadEnter, 96 },
    { Key::rightControl, 97 },
    { Key::keypadDivide, 98 },
    { Key::rightOption, 100 },
    { Key::home, 102 },
    { Key::upArrow, 103 },
    { Key::pageUp, 104 },
    { Key::leftArrow, 105 },
    { Key::rightArrow, 106 },
    { Key::end, 107 },
    { Key::downArrow, 108 },
    { Key::pageDown, 109 },
    { Key::deleteForward, 111 },
    { Key::mute, 113 },
    { Key::volumeDown, 114 },
    { Key::volumeUp, 115 },
    { Key::keypadEquals, 117 },
    { Key::keypadComma, 121 },
    { Key::yen, 124 },
    { Key::command, 125 },
    { Key::rightCommand, 126 },
    { Key::help, 138 },
    { Key::f13, 183 },
    { Key::f14, 184 },
    { Key::f15, 185 },
    { Key::f16, 186 },
    { Key::f17, 187 },
    { Key::f18, 188 },
    { Key::f19, 189 },
    { Key::f20, 190 },
};

constexpr std::array<Key, 20> functionKeys
    = { Key::f1, Key::f2, Key::f3, Key::f4, Key::f5, Key::f6, Key::f7, Key::f8, Key::f9, Key::f10, Key::f11, Key::f12,
          Key::f13, Key::f14, Key::f15, Key::f16, Key::f17, Key::f18, Key::f19, Key::f20 };

constexpr Key namedKeys[] = {
    Key::returnKey,
    Key::deleteKey,
    Key::deleteForward,
    Key::escape,
    Key::help,
    Key::home,
    Key::space,
    Key::pageUp,
    Key::pageDown,
    Key::upArrow,
    Key::rightArrow,
    Key::downArrow,
    Key::leftArrow,
    Key::keypad0,
    Key::keypad1,
    Key::keypad2,
    Key::keypad3,
    Key::keypad4,
    Key::keypad5,
    Key::keypad6,
    Key::keypad7,
    Key::keypad8,
    Key::keypad9,
    Key::keypadClear,
    Key::keypadDecimal,
    Key::keypadDivide,
    Key::keypadEnter,
    Key::keypadEquals,
    Key::keypadMinus,
    Key::keypadMultiply,
    Key::keypadPlus,
};

} // namespace

std::optional<int> evdevCode(Key key)
{
    for (const auto &[k, code] : evdevTable) {
        if (k == key)
            return code;
    }
    return std::nullopt;
}

std::optional<Key> keyForEvdevCode(int evdev)
{
    for (const auto &[k, code] : evdevTable) {
        if (code == evdev)
            return k;
    }
    return std::nullopt;
}

std::optional<int> functionKeyNumber(Key key)
{
    for (std::size_t i = 0; i < functionKeys.size(); ++i) {
        if (functionKeys[i] == key)
            return int(i) + 1;
    }
    return std::nullopt;
}

bool isSpecialKey(Key key)
{
    if (functionKeyNumber(key))
        return true;
    for (Key named : namedKeys) {
        if (named == key)
            return true;
    }
    return false;
}

} // namespace ledgewise::GlobalShortcuts
