// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/presentable_description.h"

#include <utility>

namespace ledgewise::GlobalShortcuts {

namespace {

const std::pair<ModifierFlag, const char *> symbolOrder[] = {
    { controlFlag, "⌃" },
    { optionFlag, "⌥" },
    { shiftFlag, "⇧" },
    { commandFlag, "⌘" },
    // A globe with the text-style selector, so it is drawn like the other symbols.
    { functionFlag, "\U0001F310\uFE0E" },
};

// English names of the keys shown by name; "Space" is the text for the space key.
const std::pair<Key, const char *> specialNames[] = {
    { Key::returnKey, "↩" },
    { Key::deleteKey, "⌫" },
    { Key::deleteForward, "⌦" },
    { Key::escape, "⎋" },
    { Key::help, "?⃝" },
    { Key::home, "↖" },
    { Key::space, "Space" },
    { Key::pageUp, "⇞" },
    { Key::pageDown, "⇟" },
    { Key::upArrow, "↑" },
    { Key::rightArrow, "→" },
    { Key::downArrow, "↓" },
    { Key::leftArrow, "←" },
    { Key::keypad0, "0" },
    { Key::keypad1, "1" },
    { Key::keypad2, "2" },
    { Key::keypad3, "3" },
    { Key::keypad4, "4" },
    { Key::keypad5, "5" },
    { Key::keypad6, "6" },
    { Key::keypad7, "7" },
    { Key::keypad8, "8" },
    { Key::keypad9, "9" },
    { Key::keypadClear, "⌧" },
    { Key::keypadDecimal, "." },
    { Key::keypadDivide, "/" },
    { Key::keypadEnter, "⌤" },
    { Key::keypadEquals, "=" },
    { Key::keypadMinus, "-" },
    { Key::keypadMultiply, "*" },
    { Key::keypadPlus, "+" },
};

QString capitalised(const QString &text)
{
    if (text.isEmpty())
        return text;
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString modifierSymbols(quint32 flags)
{
    QString symbols;
    for (const auto &[flag, symbol] : symbolOrder) {
        if (flags & flag)
            symbols += QString::fromUtf8(symbol);
    }
    return symbols;
}

std::optional<QString> specialKeyName(Key key)
{
    if (const auto number = functionKeyNumber(key))
        return QStringLiteral("F%1").arg(*number);
    for (const auto &[k, name] : specialNames) {
        if (k == key)
            return QString::fromUtf8(name);
    }
    return std::nullopt;
}

QString presentableDescription(const Shortcut &shortcut, const KeyboardLayout &layout)
{
    QString description = modifierSymbols(shortcut.modifiers());
    if (const auto name = specialKeyName(shortcut.key()))
        description += *name;
    else if (const auto text = layout.text(shortcut.key()))
        description += capitalised(*text);
    return description;
}

} // namespace ledgewise::GlobalShortcuts
