// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/hot_key_grabber.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace ledgewise {

// Hot keys on X11: each shortcut is a passive key grab on the root window, on a
// connection of our own so its key events never mix with Qt's. The key code names a
// physical key; the grab takes every key that types the same symbol in the layout in
// use, under the shortcut's modifiers with each combination of Caps, Num and Scroll
// Lock, so a lit lock light does not turn the shortcut off. Presses and releases are
// both reported, and a held key repeats its press only (no release per repeat). A
// layout switch or a new keyboard map takes the same shortcuts again.
class X11HotKeyGrabber final : public QObject, public GlobalShortcuts::HotKeyGrabber
{
    Q_OBJECT

public:
    explicit X11HotKeyGrabber(QObject *parent = nullptr);
    ~X11HotKeyGrabber() override;

    // False when there is no X display or it lacks the keyboard extension: every grab
    // is then refused with a reason.
    bool isActive() const { return m_notifier != nullptr; }

    std::optional<QString> grab(const GlobalShortcuts::Shortcut &shortcut, GlobalShortcuts::HotKeyID id) override;
    void ungrab(GlobalShortcuts::HotKeyID id) override;

    // What a key event another window of ours received means as a shortcut (an open
    // menu holds the keyboard, so no grab fires then): the key by its position, the
    // modifiers of the X state as flags. No value for a key without a key code of ours.
    std::optional<GlobalShortcuts::Shortcut> shortcutFor(quint32 keycode, quint32 modifierState) const;

signals:
    // The layout or the keyboard map changed and the grabs were taken again; what a
    // key types (and so how a shortcut reads) may have changed with it.
    void keyboardChanged();

private:
    struct Keyboard;
    struct Grab {
        GlobalShortcuts::HotKeyID id;
        GlobalShortcuts::Shortcut shortcut;
        QList<quint8> keycodes;
        quint16 modifiers = 0;
    };

    std::optional<QString> take(Grab &grab);
    void release(const Grab &grab);
    QList<quint16> lockVariants() const;
    void readEvents();
    // One event of our connection, as the server sent it.
    void handle(const void *event);
    void deliverKey(quint8 keycode, quint16 state, GlobalShortcuts::EventType type);
    void keyboardMapChanged();
    void takeAllAgain();

    xcb_connection_t *m_connection = nullptr;
    quint32 m_root = 0;
    quint8 m_xkbEvent = 0;
    std::unique_ptr<Keyboard> m_keyboard;
    QSocketNotifier *m_notifier = nullptr;
    QList<Grab> m_grabs;
    // Keys held down as one of our shortcuts, and which: their release is its release.
    QHash<quint8, GlobalShortcuts::HotKeyID> m_pressed;
};

} // namespace ledgewise
