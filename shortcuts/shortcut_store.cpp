// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/shortcut_store.h"

#include "platform/settings/key_value_store.h"

namespace ledgewise::GlobalShortcuts {

Store::Store(KeyValueStore &defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
{ }

void Store::declare(const Name &name)
{
    if (!m_names.contains(name))
        m_names.append(name);
    if (name.defaultShortcut && !m_defaults.contains(keyFor(name)))
        set(*name.defaultShortcut, name);
}

std::optional<Shortcut> Store::getShortcut(const Name &name) const
{
    const QVariant stored = m_defaults.value(keyFor(name));
    // Only text holds a shortcut; a cleared one is stored as false (which the settings
    // file gives back as the text "false", and that does not decode either).
    if (stored.typeId() != QMetaType::QString)
        return std::nullopt;
    return decodeShortcut(stored.toString().toUtf8());
}

bool Store::holdsUnreadableValue(const Name &name) const
{
    const QVariant stored = m_defaults.value(keyFor(name));
    return stored.typeId() == QMetaType::QString && stored.toString() != QLatin1String("false")
        && !decodeShortcut(stored.toString().toUtf8());
}

void Store::setShortcut(const std::optional<Shortcut> &shortcut, const Name &name)
{
    if (shortcut)
        set(*shortcut, name);
    else if (name.defaultShortcut)
        disable(name);
    else
        remove(name);
}

void Store::reset(const Name &name)
{
    setShortcut(name.defaultShortcut, name);
}

void Store::resetAll()
{
    for (const Name &name : std::as_const(m_names))
        reset(name);
}

void Store::set(const Shortcut &shortcut, const Name &name)
{
    unregisterCurrent(name);
    if (m_registrar && m_registrar->hasHandlers(name))
        m_registrar->registerShortcut(name, shortcut);
    m_defaults.setValue(keyFor(name), QString::fromUtf8(encodeShortcut(shortcut)));
    emit shortcutDidChange(name);
}

void Store::disable(const Name &name)
{
    unregisterCurrent(name);
    m_defaults.setValue(keyFor(name), false);
    emit shortcutDidChange(name);
}

void Store::remove(const Name &name)
{
    unregisterCurrent(name);
    m_defaults.remove(keyFor(name));
    emit shortcutDidChange(name);
}

void Store::unregisterCurrent(const Name &name)
{
    if (!m_registrar)
        return;
    if (const auto current = getShortcut(name))
        m_registrar->unregisterShortcut(*current);
}

} // namespace ledgewise::GlobalShortcuts
