#pragma once

#include "platform/settings/key_value_store.h"

#include <QSettings>

namespace ledgewise {

// KeyValueStore over QSettings: organisation and application "Ledgewise", so the
// file is $XDG_CONFIG_HOME/Ledgewise/Ledgewise.conf. Byte values keep their type
// (QSettings writes them as @ByteArray), so a caller can tell data from text.
class QSettingsStore final : public KeyValueStore
{
public:
    QSettingsStore();
    explicit QSettingsStore(const QString &iniFilePath);

    QVariant value(const QString &key) const override;
    bool contains(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    void remove(const QString &key) override;
    void sync() override;

    QString fileName() const { return m_settings.fileName(); }

private:
    QSettings m_settings;
};

} // namespace ledgewise
