// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/key.h"

#include <QByteArray>
#include <QHashFunctions>
#include <QString>
#include <Qt>

#include <optional>

namespace ledgewise::GlobalShortcuts {

// Window-system modifier flags, bit for bit as the stored masks were defined against.
enum ModifierFlag : quint32 {
    shiftFlag = 1u << 17,
    controlFlag = 1u << 18,
    optionFlag = 1u << 19,
    commandFlag = 1u << 20,
    functionFlag = 1u << 23,
};

// The hot-key mask values stored in `carbonModifiers`.
enum HotKeyMask : int {
    commandMask = 256,
    shiftMask = 512,
    optionMask = 2048,
    controlMask = 4096,
    functionMask = 131072,
};

// Flags → mask and back; bits of other modifiers are dropped both ways.
int hotKeyMask(quint32 modifierFlags);
quint32 modifierFlags(int hotKeyMask);

// Qt's modifiers (X11: Ctrl, Alt, Shift, Super) ↔ flags. The function key has no
// Qt modifier.
quint32 modifierFlags(Qt::KeyboardModifiers modifiers);
Qt::KeyboardModifiers qtModifiers(quint32 modifierFlags);

// A key plus modifiers, kept in the form it is stored in.
struct Shortcut {
    int carbonKeyCode = 0;
    int carbonModifiers = 0;

    Shortcut() = default;
    Shortcut(int keyCode, int mask)
        : carbonKeyCode(keyCode)
        , carbonModifiers(mask)
    { }
    Shortcut(Key key, quint32 flags)
        : carbonKeyCode(int(key))
        , carbonModifiers(hotKeyMask(flags))
    { }

    Key key() const { return Key(carbonKeyCode); }
    quint32 modifiers() const { return modifierFlags(carbonModifiers); }

    friend bool operator==(const Shortcut &, const Shortcut &) = default;
};

inline size_t qHash(const Shortcut &shortcut, size_t seed = 0)
{
    return qHashMulti(seed, shortcut.carbonKeyCode, shortcut.carbonModifiers);
}

// {"carbonKeyCode":37,"carbonModifiers":768}: compact, in that member order.
QByteArray encodeShortcut(const Shortcut &shortcut);
// Both members required, as whole numbers that fit an int; other members ignored.
std::optional<Shortcut> decodeShortcut(const QByteArray &json);

} // namespace ledgewise::GlobalShortcuts
