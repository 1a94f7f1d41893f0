// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/filesystem/folder_watcher.h"

#include <QFile>
#include <QSet>
#include <QSocketNotifier>

#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace ledgewise {

InotifyFolderWatcher::InotifyFolderWatcher(QObject *parent)
    : FolderWatcher(parent)
{ }

InotifyFolderWatcher::~InotifyFolderWatcher()
{
    stop();
}

bool InotifyFolderWatcher::watch(const QString &folder)
{
    stop();
    m_fd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        return false;
    constexpr uint32_t mask = IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM
        | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    m_watch = ::inotify_add_watch(m_fd, QFile::encodeName(folder).constData(), mask);
    if (m_watch < 0) {
        stop();
        return false;
    }
    m_notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &InotifyFolderWatcher::drain);
    return true;
}

void InotifyFolderWatcher::drain()
{
    // Everything queued so far is one report for the listener.
    alignas(inotify_event) char buffer[16 * 1024];
    QSet<QByteArray> names;
    bool everything = false;
    bool gone = false;
    ssize_t length = 0;
    while ((length = ::read(m_fd, buffer, sizeof buffer)) > 0) {
        for (const char *at = buffer; at < buffer + length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(at);
            // The kernel's queue was full and dropped events: which entries they
            // named is lost.
            if (event->mask & IN_Q_OVERFLOW)
                everything = true;
            // The folder was deleted or its file system unmounted (the kernel has
            // dropped the watch), or it was moved away (the watch would follow it to
            // a path that is not the one watched).
            if (event->mask & (IN_IGNORED | IN_MOVE_SELF))
                gone = true;
            // The name is padded with NULs up to `len`.
            if (event->len > 0 && event->name[0] != '\0')
                names.insert(QByteArray(event->name, qsizetype(::strnlen(event->name, event->len))));
            at += sizeof(inotify_event) + event->len;
        }
    }
    if (gone) {
        // This runs inside the notifier's own signal: it goes once that returns.
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
        m_notifier = nullptr;
        stop();
    }
    if (everything || gone)
        emit everythingChanged();
    else if (!names.isEmpty())
        emit entriesChanged(names.values());
}

void InotifyFolderWatcher::stop()
{
    delete m_notifier;
    m_notifier = nullptr;
    if (m_fd >= 0)
        ::close(m_fd); // closing also removes the watch
    m_fd = -1;
    m_watch = -1;
}

} // namespace ledgewise
