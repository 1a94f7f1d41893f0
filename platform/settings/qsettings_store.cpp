#include "platform/settings/qsettings_store.h"

namespace ledgewise {

QSettingsStore::QSettingsStore()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Ledgewise"),
                 QStringLiteral("Ledgewise"))
{
}

QSettingsStore::QSettingsStore(const QString &iniFilePath)
    : m_settings(iniFilePath, QSettings::IniFormat)
{
}

QVariant QSettingsStore::value(const QString &key) const
{
    return m_settings.value(key);
}

bool QSettingsStore::contains(const QString &key) const
{
    return m_settings.contains(key);
}

void QSettingsStore::setValue(const QString &key, const QVariant &value)
{
    m_settings.setValue(key, value);
}

void QSettingsStore::remove(const QString &key)
{
    m_settings.remove(key);
}

void QSettingsStore::sync()
{
    m_settings.sync();
}

} // namespace ledgewise
