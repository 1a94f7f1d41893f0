// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/downloads/download_item.h"
#include "modules/downloads/downloads_index.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <memory>
#include <optional>

class QTimer;

namespace ledgewise {

class DownloadsScanner;
class FolderWatcher;

// The newest files of the Downloads folder, and whether each is still growing.
// The whole folder is listed off the main thread at start, when events were lost and
// when the folder itself goes; between those, each entry an event names is measured
// again on its own, a short burst of events at a time. A file whose size changed is
// measured again 0.6 s after its last change, until two measurements agree.
class DownloadsStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)

public:
    static constexpr int settleDelayMs = 600;
    // Events arriving within this time are taken together.
    static constexpr int burstMs = 25;
    // More names than this in one burst are measured by listing the whole folder.
    static constexpr qsizetype largestBurst = 2048;

    // No folder: the user's Downloads folder. No watcher: nothing is watched. The first
    // listing runs in the background: `items` is empty until `scanFinished`.
    DownloadsStore(std::optional<QString> folder, std::unique_ptr<FolderWatcher> watcher, QObject *parent = nullptr);
    ~DownloadsStore() override;

    // The store the application runs: the Downloads folder, watched through inotify.
    static std::unique_ptr<DownloadsStore> createWatching(QObject *parent = nullptr);

    const QList<DownloadItem> &items() const { return m_items; }
    int count() const { return int(m_items.size()); }
    QString folder() const { return m_folder; }
    bool isWatching() const;

    // Lists the whole folder again, in the background.
    void refresh();
    bool isScanning() const;

    // How many file sizes the store remembers: the files in the folder, and those gone
    // while a settle check was still due.
    qsizetype rememberedSizeCount() const { return m_index.count() + m_goneSizes.size(); }

signals:
    void itemsChanged();
    // A full listing was taken in (the first one included).
    void scanFinished();
    // A settle check ran for this file (its status may or may not have changed).
    void settleChecked(const QString &path);

private:
    void entriesChanged(const QList<QByteArray> &names);
    void applyBurst();
    void takeScan(const DownloadsIndex &index, const QList<QByteArray> &downloading);
    void publish();
    void scheduleSettleCheck(const QByteArray &name);
    void settleCheck(const QByteArray &name);
    QByteArray pathOf(const QByteArray &name) const;

    QString m_folder;
    QByteArray m_folderPath; // the folder's bytes on disk
    std::unique_ptr<FolderWatcher> m_watcher;
    DownloadsIndex m_index;
    QList<DownloadItem> m_items;
    QSet<QByteArray> m_burst; // names heard of, not yet measured
    bool m_burstTooLarge = false;
    QTimer *m_burstTimer;
    QHash<QByteArray, QTimer *> m_settleWork;
    // Last sizes of files that left the folder with a settle check due: the check
    // still compares against them. Forgotten once the check agrees.
    QHash<QByteArray, qint64> m_goneSizes;
    // Last, so that it goes first: its thread is joined before anything it could
    // report to.
    std::unique_ptr<DownloadsScanner> m_scanner;
};

} // namespace ledgewise
