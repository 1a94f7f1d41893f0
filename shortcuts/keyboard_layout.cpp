// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/keyboard_layout.h"

#include <utility>

namespace ledgewise::GlobalShortcuts {

namespace {

constexpr std::pair<Key, char> usTable[] = {
    { Key::a, 'a' },
    { Key::b, 'b' },
    { Key::c, 'c' },
    { Key::d, 'd' },
    { Key::e, 'e' },
    { Key::f, 'f' },
    { Key::g, 'g' },
    { Key::h, 'h' },
    { Key::i, 'i' },
    { Key::j, 'j' },
    { Key::k, 'k' },
    { Key::l, 'l' },
    { Key::m, 'm' },
    { Key::n, 'n' },
    { Key::o, 'o' },
    { Key::p, 'p' },
    { Key::q, 'q' },
    { Key::r, 'r' },
    { Key::s, 's' },
    { Key::t, 't' },
    { Key::u, 'u' },
    { Key::v, 'v' },
    { Key::w, 'w' },
    { Key::x, 'x' },
    { Key::y, 'y' },
    { Key::z, 'z' },
    { Key::zero, '0' },
    { Key::one, '1' },
    { Key::two, '2' },
    { Key::three, '3' },
    { Key::four, '4' },
    { Key::five, '5' },
    { Key::six, '6' },
    { Key::seven, '7' },
    { Key::eight, '8' },
    { Key::nine, '9' },
    { Key::equal, '=' },
    { Key::minus, '-' },
    { Key::rightBracket, ']' },
    { Key::leftBracket, '[' },
    { Key::quote, '\'' },
    { Key::semicolon, ';' },
    { Key::backslash, '\\' },
    { Key::comma, ',' },
    { Key::slash, '/' },
    { Key::period, '.' },
    { Key::backtick, '`' },
};

} // namespace

std::optional<QString> UsKeyboardLayout::text(Key key) const
{
    if (key == Key::section)
        return QStringLiteral("§");
    for (const auto &[k, character] : usTable) {
        if (k == key)
            return QString(QLatin1Char(character));
    }
    return std::nullopt;
}

} // namespace ledgewise::GlobalShortcuts
