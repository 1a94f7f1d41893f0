// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/shortcut.h"

#include <QString>

#include <functional>
#include <optional>

namespace ledgewise::GlobalShortcuts {

enum class EventType { keyDown, keyUp };

// "LDGW": every hot key of ours is tagged with it, so an event that carries another
// tag belongs to someone else and is passed on.
inline constexpr quint32 hotKeySignature = 0x4C444757;

// What a hot key is known by to the window system: our tag and a number that is never
// handed out twice in a process.
struct HotKeyID {
    quint32 signature = hotKeySignature;
    int id = 0;

    friend bool operator==(const HotKeyID &, const HotKeyID &) = default;
};

// The window system's side of hot keys: takes a key plus modifiers for the whole
// desktop and reports when it is pressed and released. The hot-key centre drives it;
// one backend per window system, a recording fake in tests.
class HotKeyGrabber
{
public:
    virtual ~HotKeyGrabber() = default;

    // Takes the shortcut for the desktop under `id`. No value when it is taken; else
    // the window system's reason (another client holds it, no key for that code...).
    virtual std::optional<QString> grab(const Shortcut &shortcut, HotKeyID id) = 0;
    // Gives the shortcut grabbed under `id` back; nothing for an unknown id.
    virtual void ungrab(HotKeyID id) = 0;

    // Set by the centre. A press (auto-repeat may bring several) or the one release of
    // a grabbed shortcut; returns whether the event was ours.
    std::function<bool(HotKeyID, EventType)> delivered;
    // Set by the centre. A grab the window system took back, or that could not be made
    // again after the keyboard changed; `reason` as for grab().
    std::function<void(HotKeyID, const QString &reason)> lost;
};

} // namespace ledgewise::GlobalShortcuts
