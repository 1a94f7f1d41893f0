#pragma once

#include "app/preferences.h"

#include <QObject>

#include <functional>

namespace ledgewise {

class KeyValueStore;

// The name the rest of the program knows the change announcement by.
inline constexpr char ledgewisePreferencesDidChange[] = "Ledgewise.preferencesDidChange";

// Owns the one live Preferences record: loads it once, writes it back on every change
// and announces every change.
class PreferencesStore : public QObject
{
    Q_OBJECT

public:
    static constexpr auto key = "ledgewise.preferences";

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

signals:
    // Observers of `current`: only when the record really changed.
    void currentChanged();
    // Ledgewise.preferencesDidChange: after every write, with the store as its object.
    void preferencesDidChange(ledgewise::PreferencesStore *store);

private:
    void persist();

    KeyValueStore &m_defaults;
    Preferences m_current;
};

} // namespace ledgewise
