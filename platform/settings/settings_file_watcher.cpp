// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/settings/settings_file_watcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace ledgewise {

SettingsFileWatcher::SettingsFileWatcher(const QString &fileName, QObject *parent)
    : QObject(parent)
    , m_fileName(fileName)
    , m_last(stamp())
{
    // A write replaces the file through a temporary one and a lock file beside it:
    // several events for one change, looked at once they have settled.
    m_settle.setSingleShot(true);
    m_settle.setInterval(20);
    connect(&m_settle, &QTimer::timeout, this, &SettingsFileWatcher::settled);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &SettingsFileWatcher::watchAgain);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &SettingsFileWatcher::watchAgain);
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    m_watcher.addPath(QFileInfo(fileName).absolutePath());
    if (m_last.exists)
        m_watcher.addPath(fileName);
}

SettingsFileWatcher::Stamp SettingsFileWatcher::stamp() const
{
    struct stat status {
    };
    if (::stat(QFile::encodeName(m_fileName).constData(), &status) != 0)
        return {};
    return { true, qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec, qint64(status.st_size),
        quint64(status.st_ino) };
}

void SettingsFileWatcher::watchAgain()
{
    // A replaced file is a new file: the watch on the old one ended with it.
    if (QFileInfo::exists(m_fileName) && !m_watcher.files().contains(m_fileName))
        m_watcher.addPath(m_fileName);
    m_settle.start();
}

void SettingsFileWatcher::settled()
{
    // Setting the file's mode again after each write (the store keeps it private) is
    // an event too; told, it would make the listener read and write again, for ever.
    const Stamp now = stamp();
    if (now == m_last)
        return;
    m_last = now;
    emit changed();
}

} // namespace ledgewise
