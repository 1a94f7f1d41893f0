#include "platform/settings/settings_file_watcher.h"

#include <QDir>
#include <QFileInfo>

namespace ledgewise {

SettingsFileWatcher::SettingsFileWatcher(const QString &fileName, QObject *parent)
    : QObject(parent)
    , m_fileName(fileName)
{
    // A write replaces the file through a temporary one and a lock file beside it:
    // several events for one change, told once when they have settled.
    m_settle.setSingleShot(true);
    m_settle.setInterval(20);
    connect(&m_settle, &QTimer::timeout, this, &SettingsFileWatcher::changed);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &SettingsFileWatcher::watchAgain);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &SettingsFileWatcher::watchAgain);
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    m_watcher.addPath(QFileInfo(fileName).absolutePath());
    if (QFileInfo::exists(fileName))
        m_watcher.addPath(fileName);
}

void SettingsFileWatcher::watchAgain()
{
    // A replaced file is a new file: the watch on the old one ended with it.
    if (QFileInfo::exists(m_fileName) && !m_watcher.files().contains(m_fileName))
        m_watcher.addPath(m_fileName);
    m_settle.start();
}

} // namespace ledgewise
