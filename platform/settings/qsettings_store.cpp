// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/settings/qsettings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace ledgewise {

namespace {

constexpr QFileDevice::Permissions ownerReadWrite = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder = ownerReadWrite | QFileDevice::ExeOwner;

} // namespace

QSettingsStore::QSettingsStore()
    : m_open([] {
        return std::make_unique<QSettings>(
            QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Ledgewise"), QStringLiteral("Ledgewise"));
    })
    , m_settings(m_open())
{
    keepFolderPrivate();
    keepFilePrivate();
}

QSettingsStore::QSettingsStore(const QString &iniFilePath)
    : m_open([iniFilePath] { return std::make_unique<QSettings>(iniFilePath, QSettings::IniFormat); })
    , m_settings(m_open())
{
    // A caller-chosen folder may be shared with other files: only the file is ours.
    keepFilePrivate();
}

QSettingsStore::~QSettingsStore() = default;

QVariant QSettingsStore::value(const QString &key) const
{
    return m_settings->value(key);
}

bool QSettingsStore::contains(const QString &key) const
{
    return m_settings->contains(key);
}

void QSettingsStore::setValue(const QString &key, const QVariant &value)
{
    m_settings->setValue(key, value);
    sync();
}

void QSettingsStore::remove(const QString &key)
{
    m_settings->remove(key);
    sync();
}

void QSettingsStore::sync()
{
    if (!m_writeFailure.isEmpty()) {
        // A QSettings keeps its first error for good, even one from reading the file
        // when it was made. After a failure a fresh one is opened for the next write,
        // while the old one still holds the unsaved values (QSettings shares them
        // between its objects of the same file), so nothing is lost.
        std::unique_ptr<QSettings> fresh = m_open();
        std::swap(fresh, m_settings);
    }
    m_settings->sync();
    // QSettings replaces the file through a temporary one made with the umask's mode,
    // so the mode is set again after every write.
    keepFilePrivate();
    m_writeFailure = m_settings->status() == QSettings::AccessError ? describeWriteFailure() : QString();
}

void QSettingsStore::keepFolderPrivate()
{
    // Made here rather than by QSettings' first write, which would give it the umask's mode.
    const QString folder = QFileInfo(fileName()).absolutePath();
    QDir().mkpath(folder);
    QFile::setPermissions(folder, ownerOnlyFolder);
}

void QSettingsStore::keepFilePrivate()
{
    if (QFileInfo(fileName()).isFile())
        QFile::setPermissions(fileName(), ownerReadWrite);
}

QString QSettingsStore::describeWriteFailure() const
{
    // QSettings only says that it failed; the likely reason is told from the file system.
    const QFileInfo file(fileName());
    const QFileInfo folder(file.absolutePath());
    if (file.isDir())
        return QStringLiteral("a folder is in the file's place");
    if (!folder.isDir())
        return QStringLiteral("its folder does not exist");
    if (!folder.isWritable())
        return QStringLiteral("its folder is not writable");
    if (file.exists() && !file.isWritable())
        return QStringLiteral("the file is not writable");
    return QStringLiteral("the file could not be written (the disk may be full)");
}

} // namespace ledgewise
