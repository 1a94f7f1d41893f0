// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

class QSocketNotifier;

namespace ledgewise {

// Tells what changed in a folder's top level: which entries were added, removed,
// renamed, written to, grown or touched, by their names as the file system holds them
// (raw bytes, not necessarily UTF-8). Events that arrive together are reported as one.
class FolderWatcher : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Starts watching; false when the folder cannot be watched (missing, unreadable).
    virtual bool watch(const QString &folder) = 0;
    // False also once the watched folder itself was deleted or moved away.
    virtual bool isWatching() const = 0;

signals:
    // These entries changed; each name appears once.
    void entriesChanged(const QList<QByteArray> &names);
    // Anything may have changed: events were lost, or the folder itself was deleted
    // or moved away (the watch then ends). Only a full look at the folder tells.
    void everythingChanged();
};

// The real one, on inotify. Unlike a directory watch through QFileSystemWatcher it also
// hears writes into files of the folder, which is how a growing download shows, and it
// names the entries each event is about.
class InotifyFolderWatcher final : public FolderWatcher
{
    Q_OBJECT

public:
    explicit InotifyFolderWatcher(QObject *parent = nullptr);
    ~InotifyFolderWatcher() override;

    bool watch(const QString &folder) override;
    bool isWatching() const override { return m_watch >= 0; }

private:
    void drain();
    void stop();

    int m_fd = -1;
    int m_watch = -1;
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace ledgewise
