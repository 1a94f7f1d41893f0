// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/hot_key_center.h"

#include "shortcuts/presentable_description.h"

#include <cstdio>

namespace ledgewise::GlobalShortcuts {

namespace {

constexpr int knownMasks = commandMask | shiftMask | optionMask | controlMask | functionMask;

void printToStandardError(const QString &line)
{
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stderr);
}

} // namespace

HotKeyEvents::HotKeyEvents(HotKeyCenter &center, const Name &name, quint64 token)
    : m_center(&center)
    , m_name(name)
    , m_token(token)
{ }

HotKeyEvents::~HotKeyEvents()
{
    if (m_center)
        m_center->removeStream(m_name, m_token);
}

void HotKeyEvents::deliver(EventType type)
{
    emit occurred(type);
    if (type == EventType::keyDown)
        emit keyDown();
    else
        emit keyUp();
}

bool HotKeyCenter::Handlers::isEmpty() const
{
    return legacyKeyDown.isEmpty() && legacyKeyUp.isEmpty() && streamKeyDown.isEmpty() && streamKeyUp.isEmpty();
}

HotKeyCenter::HotKeyCenter(
    Store &store, HotKeyGrabber &grabber, const KeyboardLayout &layout, Report report, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_grabber(grabber)
    , m_layout(layout)
    , m_report(report ? std::move(report) : Report(printToStandardError))
{ }

HotKeyCenter::~HotKeyCenter()
{
    // The grabber may outlive us: it must neither call back nor keep our keys.
    for (auto &[id, hotKey] : m_hotKeys) {
        if (hotKey.grabbed)
            m_grabber.ungrab({ hotKeySignature, id });
    }
    if (m_handlerInstalled) {
        m_grabber.delivered = nullptr;
        m_grabber.lost = nullptr;
    }
}

void HotKeyCenter::onKeyDown(const Name &name, Action action)
{
    handlersOf(name).legacyKeyDown.append({ ++m_lastToken, std::move(action) });
    registerStoredShortcut(name);
}

void HotKeyCenter::onKeyUp(const Name &name, Action action)
{
    handlersOf(name).legacyKeyUp.append({ ++m_lastToken, std::move(action) });
    registerStoredShortcut(name);
}

std::unique_ptr<HotKeyEvents> HotKeyCenter::events(const Name &name, std::optional<EventType> only)
{
    const quint64 token = ++m_lastToken;
    std::unique_ptr<HotKeyEvents> stream(new HotKeyEvents(*this, name, token));
    const auto deliverer = [stream = QPointer<HotKeyEvents>(stream.get())](EventType type) {
        return [stream, type] {
            if (stream)
                stream->deliver(type);
        };
    };
    Handlers &handlers = handlersOf(name);
    if (!only || *only == EventType::keyDown)
        handlers.streamKeyDown.append({ token, deliverer(EventType::keyDown) });
    if (!only || *only == EventType::keyUp)
        handlers.streamKeyUp.append({ token, deliverer(EventType::keyUp) });
    registerStoredShortcut(name);
    return stream;
}

void HotKeyCenter::removeStream(const Name &name, quint64 token)
{
    for (qsizetype i = 0; i < m_handlers.size(); ++i) {
        Handlers &handlers = m_handlers[i];
        if (!(handlers.name == name))
            continue;
        const auto ofStream = [token](const Handler &handler) { return handler.token == token; };
        handlers.streamKeyDown.removeIf(ofStream);
        handlers.streamKeyUp.removeIf(ofStream);
        if (handlers.isEmpty())
            removeHandler(name);
        return;
    }
}

void HotKeyCenter::removeHandler(const Name &name)
{
    const qsizetype removed = m_handlers.removeIf([&name](const Handlers &handlers) { return handlers.name == name; });
    if (removed == 0)
        return;
    QList<Shortcut> candidates;
    if (const auto stored = m_store.getShortcut(name))
        candidates.append(*stored);
    if (const auto it = m_registeredFor.constFind(name.rawValue); it != m_registeredFor.cend())
        candidates.append(*it);
    m_registeredFor.remove(name.rawValue);
    dropUnusedShortcuts(candidates);
}

void HotKeyCenter::removeAllHandlers()
{
    const QList<Handlers> all = std::exchange(m_handlers, {});
    m_registeredFor.clear();
    for (const Handlers &handlers : all) {
        if (const auto stored = m_store.getShortcut(handlers.name))
            unregisterHotKey(*stored);
    }
}

void HotKeyCenter::enable(const QList<Name> &names)
{
    for (const Name &name : names)
        registerStoredShortcut(name);
}

void HotKeyCenter::disable(const QList<Name> &names)
{
    for (const Name &name : names) {
        if (const auto stored = m_store.getShortcut(name))
            unregisterHotKey(*stored);
    }
}

bool HotKeyCenter::isEnabled(const Name &name) const
{
    const auto stored = m_store.getShortcut(name);
    return stored && isRegistered(*stored);
}

void HotKeyCenter::setMenuTracking(bool tracking)
{
    if (m_menuTracking == tracking)
        return;
    m_menuTracking = tracking;
    m_menuPresses.clear();
    updateEventHandler();
}

bool HotKeyCenter::handleMenuKeyEvent(int carbonKeyCode, quint32 modifierFlags, EventType type, bool autoRepeat)
{
    // A held key's repeats are the shortcut's as well, but only its first press and
    // its last release are told: a held Alt+Space toggles once.
    if (autoRepeat)
        return m_menuPresses.contains(carbonKeyCode);
    // A key's release belongs to the shortcut its press was, whatever modifiers are
    // still held: Alt is often let go before Space.
    if (type == EventType::keyUp) {
        const auto pressed = m_menuPresses.find(carbonKeyCode);
        if (pressed != m_menuPresses.end()) {
            const Shortcut shortcut = pressed.value();
            m_menuPresses.erase(pressed);
            return deliverToRecord(shortcut, type);
        }
    }
    // The menu reports flags; records hold masks. Flags of other modifiers (Num Lock,
    // the keypad) fall away in the conversion, as they do for a grab.
    const Shortcut pressed(carbonKeyCode, hotKeyMask(modifierFlags));
    if (type == EventType::keyDown && isRegistered(pressed))
        m_menuPresses.insert(carbonKeyCode, pressed);
    return deliverToRecord(pressed, type);
}

bool HotKeyCenter::deliverToRecord(const Shortcut &shortcut, EventType type)
{
    for (const auto &[id, hotKey] : m_hotKeys) {
        if (!(hotKey.shortcut == shortcut))
            continue;
        const HotKey record = hotKey; // the handlers may change the table
        if (type == EventType::keyDown)
            record.onKeyDown(record.shortcut);
        else
            record.onKeyUp(record.shortcut);
        return true;
    }
    return false;
}

void HotKeyCenter::setPaused(bool paused)
{
    m_paused = paused;
}

void HotKeyCenter::storedShortcutsChanged()
{
    const QList<Handlers> named = m_handlers;
    for (const Handlers &handlers : named) {
        const Name &name = handlers.name;
        const auto stored = m_store.getShortcut(name);
        const auto it = m_registeredFor.constFind(name.rawValue);
        const std::optional<Shortcut> before
            = it == m_registeredFor.cend() ? std::nullopt : std::optional<Shortcut>(*it);
        if (stored == before)
            continue;
        m_registeredFor.remove(name.rawValue);
        if (before)
            dropUnusedShortcuts({ *before });
        registerStoredShortcut(name);
    }
}

void HotKeyCenter::registerShortcut(const Name &name, const Shortcut &shortcut)
{
    m_registeredFor.insert(name.rawValue, shortcut);
    if (!isRegistered(shortcut))
        registerHotKey(shortcut);
}

void HotKeyCenter::unregisterShortcut(const Shortcut &shortcut)
{
    unregisterHotKey(shortcut);
}

bool HotKeyCenter::hasHandlers(const Name &name) const
{
    for (const Handlers &handlers : m_handlers) {
        if (handlers.name == name)
            return !handlers.isEmpty();
    }
    return false;
}

bool HotKeyCenter::dispatch(HotKeyID id, EventType type)
{
    if (id.signature != hotKeySignature)
        return false;
    const auto it = m_hotKeys.find(id.id);
    if (it == m_hotKeys.end())
        return false;
    const HotKey record = it->second; // the handlers may change the table
    if (type == EventType::keyDown)
        record.onKeyDown(record.shortcut);
    else
        record.onKeyUp(record.shortcut);
    return true;
}

void HotKeyCenter::registerHotKey(const Shortcut &shortcut)
{
    // Identifiers only grow, so a late event of an unregistered hot key can never be
    // taken for its successor.
    const int id = ++m_lastId;
    HotKey hotKey { shortcut, id, false, [this](const Shortcut &pressed) { routeKeyDown(pressed); },
        [this](const Shortcut &released) { routeKeyUp(released); } };
    if (shortcut.carbonModifiers & ~knownMasks) {
        printFailure(
            shortcut, QStringLiteral("unknown modifier bits 0x%1").arg(shortcut.carbonModifiers & ~knownMasks, 0, 16));
        return;
    }
    // While a menu is open nothing is grabbed; the record waits for it to close.
    if (!m_menuTracking && !grab(hotKey))
        return;
    m_hotKeys.emplace(id, std::move(hotKey));
    if (!m_handlerInstalled) {
        m_handlerInstalled = true;
        m_grabber.delivered = [this](HotKeyID hotKeyId, EventType type) { return dispatch(hotKeyId, type); };
        m_grabber.lost = [this](HotKeyID hotKeyId, const QString &reason) { grabLost(hotKeyId, reason); };
    }
    updateEventHandler();
}

void HotKeyCenter::unregisterHotKey(const Shortcut &shortcut)
{
    for (auto it = m_hotKeys.begin(); it != m_hotKeys.end();) {
        if (it->second.shortcut == shortcut) {
            if (it->second.grabbed)
                m_grabber.ungrab({ hotKeySignature, it->first });
            it = m_hotKeys.erase(it);
        } else {
            ++it;
        }
    }
}

bool HotKeyCenter::isRegistered(const Shortcut &shortcut) const
{
    for (const auto &[id, hotKey] : m_hotKeys) {
        if (hotKey.shortcut == shortcut)
            return true;
    }
    return false;
}

void HotKeyCenter::registerStoredShortcut(const Name &name)
{
    const auto stored = m_store.getShortcut(name);
    if (!stored) {
        if (m_store.holdsUnreadableValue(name))
            m_report(QStringLiteral("Error registering hotkey %1: its stored value cannot be read").arg(name.rawValue));
        return;
    }
    m_registeredFor.insert(name.rawValue, *stored);
    if (!isRegistered(*stored))
        registerHotKey(*stored);
}

void HotKeyCenter::updateEventHandler()
{
    if (!m_handlerInstalled)
        return;
    for (auto &[id, hotKey] : m_hotKeys) {
        if (!m_menuTracking && !hotKey.grabbed) {
            grab(hotKey);
        } else if (m_menuTracking && hotKey.grabbed) {
            // Given back but remembered: the open menu's key events are matched instead.
            m_grabber.ungrab({ hotKeySignature, id });
            hotKey.grabbed = false;
        }
    }
}

bool HotKeyCenter::grab(HotKey &hotKey)
{
    if (const auto refused = m_grabber.grab(hotKey.shortcut, { hotKeySignature, hotKey.carbonHotKeyId })) {
        printFailure(hotKey.shortcut, *refused);
        return false;
    }
    hotKey.grabbed = true;
    return true;
}

void HotKeyCenter::printFailure(const Shortcut &shortcut, const QString &reason) const
{
    m_report(QStringLiteral("Error registering hotkey ") + presentableDescription(shortcut, m_layout)
        + QStringLiteral(": ") + reason);
}

void HotKeyCenter::grabLost(HotKeyID id, const QString &reason)
{
    const auto it = m_hotKeys.find(id.id);
    if (id.signature != hotKeySignature || it == m_hotKeys.end())
        return;
    it->second.grabbed = false;
    printFailure(it->second.shortcut, reason);
}

void HotKeyCenter::routeKeyDown(const Shortcut &shortcut)
{
    if (m_paused) {
        if (!m_swallowedPresses.contains(shortcut))
            m_swallowedPresses.append(shortcut);
        return;
    }
    QList<Action> actions;
    for (const Name &name : namesFor(shortcut)) {
        const Handlers &handlers = handlersOf(name);
        for (const Handler &handler : handlers.legacyKeyDown)
            actions.append(handler.action);
        for (const Handler &handler : handlers.streamKeyDown)
            actions.append(handler.action);
    }
    for (const Action &action : std::as_const(actions))
        action();
}

void HotKeyCenter::routeKeyUp(const Shortcut &shortcut)
{
    // The release of a press the recorder had is the recorder's too.
    if (m_swallowedPresses.removeAll(shortcut) > 0)
        return;
    QList<Action> actions;
    for (const Name &name : namesFor(shortcut)) {
        const Handlers &handlers = handlersOf(name);
        for (const Handler &handler : handlers.legacyKeyUp)
            actions.append(handler.action);
        for (const Handler &handler : handlers.streamKeyUp)
            actions.append(handler.action);
    }
    for (const Action &action : std::as_const(actions))
        action();
}

QList<Name> HotKeyCenter::namesFor(const Shortcut &shortcut) const
{
    QList<Name> names;
    for (const Handlers &handlers : m_handlers) {
        if (m_store.getShortcut(handlers.name) == shortcut)
            names.append(handlers.name);
    }
    return names;
}

HotKeyCenter::Handlers &HotKeyCenter::handlersOf(const Name &name)
{
    for (Handlers &handlers : m_handlers) {
        if (handlers.name == name)
            return handlers;
    }
    m_handlers.append(Handlers { name, {}, {}, {}, {} });
    return m_handlers.last();
}

void HotKeyCenter::dropUnusedShortcuts(const QList<Shortcut> &shortcuts)
{
    for (const Shortcut &shortcut : shortcuts) {
        if (namesFor(shortcut).isEmpty())
            unregisterHotKey(shortcut);
    }
}

} // namespace ledgewise::GlobalShortcuts
