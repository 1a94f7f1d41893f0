// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/shortcut.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace ledgewise::GlobalShortcuts {

namespace {

struct ModifierPair {
    ModifierFlag flag;
    HotKeyMask mask;
    Qt::KeyboardModifier qt;
};

constexpr ModifierPair modifierPairs[] = {
    { controlFlag, controlMask, Qt::ControlModifier },
    { optionFlag, optionMask, Qt::AltModifier },
    { shiftFlag, shiftMask, Qt::ShiftModifier },
    { commandFlag, commandMask, Qt::MetaModifier },
    { functionFlag, functionMask, Qt::NoModifier },
};

std::optional<int> wholeNumber(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (std::trunc(number) != number || number < std::numeric_limits<int>::min()
        || number > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(number);
}

} // namespace

int hotKeyMask(quint32 flags)
{
    int mask = 0;
    for (const auto &pair : modifierPairs) {
        if (flags & pair.flag)
            mask |= pair.mask;
    }
    return mask;
}

quint32 modifierFlags(int mask)
{
    quint32 flags = 0;
    for (const auto &pair : modifierPairs) {
        if (mask & pair.mask)
            flags |= pair.flag;
    }
    return flags;
}

quint32 modifierFlags(Qt::KeyboardModifiers modifiers)
{
    quint32 flags = 0;
    for (const auto &pair : modifierPairs) {
        if (pair.qt != Qt::NoModifier && modifiers.testFlag(pair.qt))
            flags |= pair.flag;
    }
    return flags;
}

Qt::KeyboardModifiers qtModifiers(quint32 flags)
{
    Qt::KeyboardModifiers modifiers;
    for (const auto &pair : modifierPairs) {
        if (flags & pair.flag)
            modifiers |= pair.qt;
    }
    return modifiers;
}

QByteArray encodeShortcut(const Shortcut &shortcut)
{
    return QByteArray("{\"carbonKeyCode\":") + QByteArray::number(shortcut.carbonKeyCode)
        + ",\"carbonModifiers\":" + QByteArray::number(shortcut.carbonModifiers) + '}';
}

std::optional<Shortcut> decodeShortcut(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const auto keyCode = wholeNumber(document.object().value(QLatin1String("carbonKeyCode")));
    const auto modifiers = wholeNumber(document.object().value(QLatin1String("carbonModifiers")));
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut(*keyCode, *modifiers);
}

} // namespace ledgewise::GlobalShortcuts
