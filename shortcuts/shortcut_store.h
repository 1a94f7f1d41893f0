// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/shortcut.h"

#include <QHashFunctions>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <optional>

namespace ledgewise {
class KeyValueStore;
}

namespace ledgewise::GlobalShortcuts {

// A named shortcut slot, such as "toggleLeft", with the shortcut a fresh installation
// starts with.
struct Name {
    QString rawValue;
    std::optional<Shortcut> defaultShortcut;

    friend bool operator==(const Name &a, const Name &b) { return a.rawValue == b.rawValue; }
};

// A name is known by its raw value, so handlers and hot keys can be keyed by it.
inline size_t qHash(const Name &name, size_t seed = 0)
{
    return qHash(name.rawValue, seed);
}

// Where shortcuts become system-wide hot keys. The store tells it when a name's
// shortcut comes and goes; it knows which names have handlers.
class HotKeyRegistrar
{
public:
    virtual ~HotKeyRegistrar() = default;
    virtual void registerShortcut(const Name &name, const Shortcut &shortcut) = 0;
    virtual void unregisterShortcut(const Shortcut &shortcut) = 0;
    virtual bool hasHandlers(const Name &name) const = 0;
};

// The user's shortcuts, each kept under "GlobalShortcuts_" + name: a JSON text for a
// shortcut, false for one the user cleared while the name has a default, nothing for
// none.
class Store : public QObject
{
    Q_OBJECT

public:
    explicit Store(KeyValueStore &defaults, QObject *parent = nullptr);

    static QString keyFor(const Name &name) { return QStringLiteral("GlobalShortcuts_") + name.rawValue; }

    // Hot keys are registered through `registrar` from now on (none: nothing is).
    void setRegistrar(HotKeyRegistrar *registrar) { m_registrar = registrar; }

    // Makes a name known. A default is stored once, when nothing is stored yet, so a
    // later start never overwrites the user's change or a cleared shortcut.
    void declare(const Name &name);

    std::optional<Shortcut> getShortcut(const Name &name) const;
    // A text is stored for the name, but not a shortcut (a hand-edited or damaged file).
    bool holdsUnreadableValue(const Name &name) const;
    // With a shortcut: store it. Without: disable the name when it has a default,
    // remove its value when it has none.
    void setShortcut(const std::optional<Shortcut> &shortcut, const Name &name);

    void reset(const Name &name);
    void resetAll();

    QList<Name> names() const { return m_names; }

signals:
    // Every set, disable and remove, with the name.
    void shortcutDidChange(const ledgewise::GlobalShortcuts::Name &name);

private:
    void set(const Shortcut &shortcut, const Name &name);
    void disable(const Name &name);
    void remove(const Name &name);
    void unregisterCurrent(const Name &name);

    KeyValueStore &m_defaults;
    HotKeyRegistrar *m_registrar = nullptr;
    QList<Name> m_names;
};

} // namespace ledgewise::GlobalShortcuts

Q_DECLARE_METATYPE(ledgewise::GlobalShortcuts::Name)
