// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/downloads/download_item.h"
#include "platform/filesystem/folder_entries.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <optional>

namespace ledgewise {

// Every listed file of the Downloads folder by name (raw bytes), with its last measured
// size, modification time and status, and the names of the newest few kept up to date
// as single entries change. Holds only files that exist (as last seen): a name that
// leaves the folder leaves the index, so it never grows with the folder's history.
// Pure: it reads nothing from disk; the store hands it what it measured.
class DownloadsIndex
{
public:
    struct Entry {
        FileFacts facts;
        DownloadItem::Status status = DownloadItem::Status::ready;
    };

    // A full listing, each file's status by the status rule against its size in
    // `previous` (a file `previous` did not hold is ready). `downloading` receives the
    // names that changed size, whose settle checks are due.
    static DownloadsIndex fromListing(
        QHash<QByteArray, FileFacts> files, const DownloadsIndex &previous, QList<QByteArray> *downloading = nullptr);

    // One entry measured again: `facts` absent when it is gone or no longer a regular
    // file. Returns its new status; absent when it is not (or no longer) listed.
    std::optional<DownloadItem::Status> measured(const QByteArray &name, std::optional<FileFacts> facts);

    // A settle check's result for a listed file: only its size and status change.
    void settled(const QByteArray &name, qint64 size, DownloadItem::Status status);

    const Entry *find(const QByteArray &name) const;
    qsizetype count() const { return m_files.size(); }

    // The names of the newest files, newest first, at most DownloadRules::maximumItems.
    QList<QByteArray> newest();

private:
    void place(const QByteArray &name, qint64 previousModifiedNs);
    void reselect();

    QHash<QByteArray, Entry> m_files;
    QList<QByteArray> m_newest;
    bool m_newestStale = false;
};

} // namespace ledgewise
