#include "app/preferences_store.h"

#include "app/preferences_codec.h"
#include "platform/settings/key_value_store.h"

namespace ledgewise {

namespace {

Preferences load(const KeyValueStore &defaults)
{
    const QVariant stored = defaults.value(QString::fromLatin1(PreferencesStore::key));
    // Only a byte value is the stored document; a value of any other type is as good
    // as absent. The document itself stays untouched until the next change.
    if (stored.typeId() != QMetaType::QByteArray)
        return Preferences::defaults();
    return decodePreferences(stored.toByteArray()).value_or(Preferences::defaults());
}

} // namespace

PreferencesStore::PreferencesStore(KeyValueStore &defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_current(load(defaults))
{
}

void PreferencesStore::setCurrent(const Preferences &preferences)
{
    const bool changed = !(preferences == m_current);
    m_current = preferences;
    if (changed)
        emit currentChanged();
    persist();
    emit preferencesDidChange(this);
}

void PreferencesStore::update(const std::function<void(Preferences &)> &change)
{
    Preferences changedRecord = m_current;
    change(changedRecord);
    m_current = std::move(changedRecord);
    emit currentChanged();
    persist();
    emit preferencesDidChange(this);
}

void PreferencesStore::persist()
{
    // A record that cannot be encoded leaves the previous document in place.
    if (const auto json = encodePreferences(m_current))
        m_defaults.setValue(QString::fromLatin1(key), *json);
}

} // namespace ledgewise
