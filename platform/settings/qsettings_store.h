// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/settings/key_value_store.h"

#include <QSettings>

#include <functional>
#include <memory>

namespace ledgewise {

// KeyValueStore over QSettings: organisation and application "Ledgewise", so the
// file is $XDG_CONFIG_HOME/Ledgewise/Ledgewise.conf. Byte values keep their type
// (QSettings writes them as @ByteArray), so a caller can tell data from text.
//
// The file holds pinned paths and sites: its folder is kept 0700 and the file 0600,
// whatever the umask. Every change is written through at once, so the file's mode is
// set after each write and a failed write is known straight away.
class QSettingsStore final : public KeyValueStore
{
public:
    QSettingsStore();
    explicit QSettingsStore(const QString &iniFilePath);
    ~QSettingsStore() override;

    QVariant value(const QString &key) const override;
    bool contains(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    void remove(const QString &key) override;
    void sync() override;

    QString fileName() const override { return m_settings->fileName(); }
    QString writeFailure() const override { return m_writeFailure; }

private:
    void keepFolderPrivate();
    void keepFilePrivate();
    QString describeWriteFailure() const;

    std::function<std::unique_ptr<QSettings>()> m_open;
    std::unique_ptr<QSettings> m_settings;
    QString m_writeFailure;
};

} // namespace ledgewise
