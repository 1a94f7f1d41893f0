// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <optional>

namespace ledgewise {

class KeyValueStore;

// Owns the one live Preferences record: loads it once, writes it back on every change
// and announces every change.
class PreferencesStore : public QObject
{
    Q_OBJECT

public:
    static constexpr auto key = "ledgewise.preferences";
    // Beside the settings file: the last stored record that could not be read, kept
    // before a change replaced it (one generation).
    static constexpr auto setAsideFileName = "preferences.unreadable.json";

    // Loads the stored record; anything missing, of another type or undecodable gives
    // the defaults, silently. Neither writes nor announces.
    explicit PreferencesStore(KeyValueStore &defaults, QObject *parent = nullptr);

    const Preferences &current() const { return m_current; }

    // Replaces the record, then writes it and announces the change. Assigning a record
    // equal to the current one still writes and announces (listeners must tolerate
    // that), but does not tell observers of `current`.
    void setCurrent(const Preferences &preferences);

    // An in-place change of the live record: one write, one announcement.
    void update(const std::function<void(Preferences &)> &change);

    // Where an unreadable record is kept; empty when the settings are not in a file.
    QString setAsidePath() const;

signals:
    // Observers of `current`: only when the record really changed.
    void currentChanged();
    // After every write, with the store as its object.
    void preferencesDidChange(ledgewise::PreferencesStore *store);

private:
    void persist();
    void setAsideUnreadable();
    void reportWriteFailure();

    KeyValueStore &m_defaults;
    // What was stored but could not be read, until the first write has kept a copy.
    std::optional<QByteArray> m_unreadable;
    Preferences m_current;
    // Told once per run of failed writes, not once per change.
    bool m_writeFailureReported = false;
};

} // namespace ledgewise
