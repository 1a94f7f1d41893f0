// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences_store.h"

#include "app/preferences_codec.h"
#include "platform/settings/key_value_store.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
#include <utility>

namespace ledgewise {

namespace {

struct Loaded {
    Preferences record;
    std::optional<QByteArray> unreadable;
};

Loaded load(const KeyValueStore &defaults)
{
    const QVariant stored = defaults.value(QString::fromLatin1(PreferencesStore::key));
    if (!stored.isValid())
        return { Preferences::defaults(), std::nullopt };
    // Only a byte value is the stored document; a value of any other type is as good
    // as absent. Either way something the user had is there: it is kept aside before
    // the next change replaces it, so a hand edit gone wrong can be recovered.
    const QByteArray bytes
        = stored.typeId() == QMetaType::QByteArray ? stored.toByteArray() : stored.toString().toUtf8();
    if (stored.typeId() == QMetaType::QByteArray) {
        if (auto decoded = decodePreferences(bytes))
            return { std::move(*decoded), std::nullopt };
    }
    return { Preferences::defaults(), bytes.isEmpty() ? std::nullopt : std::optional<QByteArray>(bytes) };
}

} // namespace

PreferencesStore::PreferencesStore(KeyValueStore &defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
{
    Loaded loaded = load(defaults);
    m_current = std::move(loaded.record);
    m_unreadable = std::move(loaded.unreadable);
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

QString PreferencesStore::setAsidePath() const
{
    const QString settingsFile = m_defaults.fileName();
    if (settingsFile.isEmpty())
        return {};
    return QFileInfo(settingsFile).dir().filePath(QString::fromLatin1(setAsideFileName));
}

void PreferencesStore::persist()
{
    setAsideUnreadable();
    // A record that cannot be encoded leaves the previous document in place.
    if (const auto json = encodePreferences(m_current))
        m_defaults.setValue(QString::fromLatin1(key), *json);
    reportWriteFailure();
}

void PreferencesStore::setAsideUnreadable()
{
    if (!m_unreadable)
        return;
    const QByteArray bytes = *std::exchange(m_unreadable, std::nullopt);
    const QString path = setAsidePath();
    if (path.isEmpty())
        return;
    // Whole or not at all, and as private as the settings file it came from.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(bytes);
    file.commit();
}

void PreferencesStore::reportWriteFailure()
{
    const QString failure = m_defaults.writeFailure();
    if (failure.isEmpty()) {
        m_writeFailureReported = false;
        return;
    }
    if (m_writeFailureReported)
        return;
    m_writeFailureReported = true;
    std::fprintf(stderr, "Ledgewise could not save its settings to %s: %s.\n", qPrintable(m_defaults.fileName()),
        qPrintable(failure));
}

} // namespace ledgewise
