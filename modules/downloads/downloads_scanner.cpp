// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_scanner.h"

#include "platform/filesystem/folder_entries.h"

namespace ledgewise {

DownloadsScanner::~DownloadsScanner()
{
    cancelRunning();
}

void DownloadsScanner::start(const QByteArray &folder, const DownloadsIndex &previous)
{
    cancelRunning();
    const quint64 generation = ++m_generation;
    m_running = true;
    auto cancelled = std::make_shared<std::atomic<bool>>(false);
    m_cancelled = cancelled;
    // The index is implicitly shared: the copy handed over is read there while this
    // thread goes on changing its own, which then detaches.
    m_thread = std::thread([this, folder, previous, cancelled, generation] {
        QHash<QByteArray, FileFacts> files;
        FolderEntries::forEachRegularFile(folder, [&](const QByteArray &name, const FileFacts &facts) {
            files.insert(name, facts);
            return !cancelled->load(std::memory_order_relaxed);
        });
        if (cancelled->load())
            return;
        QList<QByteArray> downloading;
        DownloadsIndex index = DownloadsIndex::fromListing(std::move(files), previous, &downloading);
        // `this` outlives the thread (its destructor joins it); the queued call is
        // dropped with it if it goes first.
        QMetaObject::invokeMethod(
            this,
            [this, generation, index = std::move(index), downloading = std::move(downloading)] {
                if (generation != m_generation)
                    return; // a newer scan was asked for meanwhile
                m_running = false;
                emit finished(index, downloading);
            },
            Qt::QueuedConnection);
    });
}

void DownloadsScanner::cancelRunning()
{
    if (m_cancelled)
        m_cancelled->store(true);
    // Cancelled, the scan stops at its next entry: the wait is short.
    if (m_thread.joinable())
        m_thread.join();
    m_running = false;
}

} // namespace ledgewise
