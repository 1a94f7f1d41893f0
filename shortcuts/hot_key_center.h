// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/hot_key_grabber.h"
#include "shortcuts/shortcut_store.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace ledgewise::GlobalShortcuts {

class KeyboardLayout;
class HotKeyCenter;

// One subscriber's view of a name's presses and releases, for as long as it lives:
// its handlers are added when it is made and removed when it is destroyed (and the
// name's hot key goes with them when no other handler is left).
class HotKeyEvents : public QObject
{
    Q_OBJECT

public:
    ~HotKeyEvents() override;

signals:
    void occurred(ledgewise::GlobalShortcuts::EventType type);
    void keyDown();
    void keyUp();

private:
    friend class HotKeyCenter;
    HotKeyEvents(HotKeyCenter &center, const Name &name, quint64 token);
    void deliver(EventType type);

    QPointer<HotKeyCenter> m_center;
    Name m_name;
    quint64 m_token;
};

// The process's hot keys: which shortcuts are taken for the desktop, under which
// number, and who is told when they are pressed and released. Handlers are kept per
// name; a press is routed to every name whose stored shortcut it is, so a shortcut
// changed in the store reaches the right handlers without anyone re-subscribing.
// Main thread only.
class HotKeyCenter : public QObject, public HotKeyRegistrar
{
    Q_OBJECT

public:
    using Action = std::function<void()>;
    // Where the one diagnostic line goes (standard error in the program).
    using Report = std::function<void(const QString &line)>;

    // A hot key the system holds for us: the record of one registration.
    struct HotKey {
        Shortcut shortcut;
        int carbonHotKeyId = 0;
        // Whether the grab is in place now; a record is kept ungrabbed while a menu is
        // tracked.
        bool grabbed = false;
        std::function<void(const Shortcut &)> onKeyDown;
        std::function<void(const Shortcut &)> onKeyUp;
    };

    HotKeyCenter(Store &store, HotKeyGrabber &grabber, const KeyboardLayout &layout, Report report = {},
        QObject *parent = nullptr);
    ~HotKeyCenter() override;

    // Adds the action to the name's list and registers the name's stored shortcut if
    // it is not registered yet.
    void onKeyDown(const Name &name, Action action);
    void onKeyUp(const Name &name, Action action);
    // A live view of the name's events (only `only` when given); its handlers go when
    // it is destroyed.
    std::unique_ptr<HotKeyEvents> events(const Name &name, std::optional<EventType> only = std::nullopt);

    // Drops the name's (every name's) handlers and unregisters the shortcuts no name
    // with handlers uses any more.
    void removeHandler(const Name &name);
    void removeAllHandlers();

    // Registers (unregisters) the stored shortcuts of these names; handlers stay.
    void enable(const QList<Name> &names);
    void disable(const QList<Name> &names);
    // Whether the name's stored shortcut is registered.
    bool isEnabled(const Name &name) const;

    // True while a menu of ours is open: the grabs are given back (a grabbed key would
    // never reach the menu) and the menu's own key events are matched instead.
    void setMenuTracking(bool tracking);
    bool isMenuTracking() const { return m_menuTracking; }
    // A key event the open menu received; true when it was one of our shortcuts (the
    // menu should then not act on it). Auto-repeated events of a held shortcut are
    // taken from the menu but not delivered.
    bool handleMenuKeyEvent(int carbonKeyCode, quint32 modifierFlags, EventType type, bool autoRepeat = false);

    // True while a shortcut recorder records: a press of an existing shortcut is the
    // recorder's, not its action's (nor is the release of that press).
    void setPaused(bool paused);
    bool isPaused() const { return m_paused; }

    // The stored shortcuts may have changed behind the store's back (the settings file
    // was edited): every name with handlers gets its current stored shortcut.
    void storedShortcutsChanged();

    // The hot-key table: each registration by its identifier.
    const std::map<int, HotKey> &hotKeys() const { return m_hotKeys; }

    // HotKeyRegistrar: the store's set, disable and remove.
    void registerShortcut(const Name &name, const Shortcut &shortcut) override;
    void unregisterShortcut(const Shortcut &shortcut) override;
    bool hasHandlers(const Name &name) const override;

    // A grabbed shortcut was pressed or released; false when the event is not ours.
    bool dispatch(HotKeyID id, EventType type);

private:
    friend class HotKeyEvents;
    struct Handler {
        quint64 token = 0;
        Action action;
    };
    struct Handlers {
        Name name;
        QList<Handler> legacyKeyDown, legacyKeyUp;
        QList<Handler> streamKeyDown, streamKeyUp;
        bool isEmpty() const;
    };

    void registerHotKey(const Shortcut &shortcut);
    void unregisterHotKey(const Shortcut &shortcut);
    bool isRegistered(const Shortcut &shortcut) const;
    void registerStoredShortcut(const Name &name);
    void updateEventHandler();
    bool grab(HotKey &hotKey);
    bool deliverToRecord(const Shortcut &shortcut, EventType type);
    void printFailure(const Shortcut &shortcut, const QString &reason) const;
    void grabLost(HotKeyID id, const QString &reason);
    void routeKeyDown(const Shortcut &shortcut);
    void routeKeyUp(const Shortcut &shortcut);
    QList<Name> namesFor(const Shortcut &shortcut) const;
    Handlers &handlersOf(const Name &name);
    void removeStream(const Name &name, quint64 token);
    void dropUnusedShortcuts(const QList<Shortcut> &shortcuts);

    Store &m_store;
    HotKeyGrabber &m_grabber;
    const KeyboardLayout &m_layout;
    Report m_report;
    std::map<int, HotKey> m_hotKeys;
    int m_lastId = 0;
    bool m_handlerInstalled = false;
    // Names with handlers, in the order their first handler came.
    QList<Handlers> m_handlers;
    // The shortcut registered on behalf of each name, to notice a changed file.
    QHash<QString, Shortcut> m_registeredFor;
    quint64 m_lastToken = 0;
    bool m_menuTracking = false;
    bool m_paused = false;
    // Keys pressed in the open menu as one of our shortcuts, by key code.
    QHash<int, Shortcut> m_menuPresses;
    // Shortcuts pressed while paused: their release is not delivered either.
    QList<Shortcut> m_swallowedPresses;
};

} // namespace ledgewise::GlobalShortcuts
