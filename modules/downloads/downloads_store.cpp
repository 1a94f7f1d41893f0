// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_store.h"

#include "modules/downloads/downloads_scanner.h"
#include "platform/filesystem/folder_entries.h"
#include "platform/filesystem/folder_watcher.h"
#include "platform/xdg/standard_folders.h"

#include <QFile>
#include <QTimeZone>
#include <QTimer>

namespace ledgewise {

DownloadsStore::DownloadsStore(std::optional<QString> folder, std::unique_ptr<FolderWatcher> watcher, QObject *parent)
    : QObject(parent)
    , m_folder(folder.value_or(StandardFolders::downloads()))
    , m_folderPath(QFile::encodeName(m_folder))
    , m_watcher(std::move(watcher))
    , m_burstTimer(new QTimer(this))
    , m_scanner(std::make_unique<DownloadsScanner>())
{
    m_burstTimer->setSingleShot(true);
    m_burstTimer->setInterval(burstMs);
    connect(m_burstTimer, &QTimer::timeout, this, &DownloadsStore::applyBurst);
    connect(m_scanner.get(), &DownloadsScanner::finished, this, &DownloadsStore::takeScan);
    // Watching before the first listing: nothing that changes in between is missed.
    if (m_watcher) {
        connect(m_watcher.get(), &FolderWatcher::entriesChanged, this, &DownloadsStore::entriesChanged);
        connect(m_watcher.get(), &FolderWatcher::everythingChanged, this, &DownloadsStore::refresh);
        m_watcher->watch(m_folder);
    }
    refresh();
}

DownloadsStore::~DownloadsStore() = default;

std::unique_ptr<DownloadsStore> DownloadsStore::createWatching(QObject *parent)
{
    return std::make_unique<DownloadsStore>(std::nullopt, std::make_unique<InotifyFolderWatcher>(), parent);
}

bool DownloadsStore::isWatching() const
{
    return m_watcher && m_watcher->isWatching();
}

bool DownloadsStore::isScanning() const
{
    return m_scanner->isRunning();
}

void DownloadsStore::refresh()
{
    // What was heard of so far is in the listing; what comes while it runs is measured
    // after it.
    m_burst.clear();
    m_burstTooLarge = false;
    m_scanner->start(m_folderPath, m_index);
}

void DownloadsStore::entriesChanged(const QList<QByteArray> &names)
{
    if (!m_burstTooLarge) {
        for (const QByteArray &name : names)
            m_burst.insert(name);
        if (m_burst.size() > largestBurst) {
            m_burst.clear();
            m_burstTooLarge = true;
        }
    }
    if (!m_burstTimer->isActive())
        m_burstTimer->start();
}

void DownloadsStore::applyBurst()
{
    if (isScanning())
        return; // taken in once the listing is
    if (m_burstTooLarge) {
        refresh();
        return;
    }
    const QSet<QByteArray> names = std::exchange(m_burst, {});
    for (const QByteArray &name : names) {
        const DownloadsIndex::Entry *before = m_index.find(name);
        const std::optional<qint64> sizeBefore = before ? std::optional(before->facts.size) : std::nullopt;
        const auto status = m_index.measured(name, FolderEntries::regularFile(pathOf(name)));
        if (!status) {
            if (sizeBefore && m_settleWork.contains(name))
                m_goneSizes.insert(name, *sizeBefore);
            continue;
        }
        m_goneSizes.remove(name); // back again: the index holds its size
        if (*status == DownloadItem::Status::downloading)
            scheduleSettleCheck(name);
    }
    publish();
}

void DownloadsStore::takeScan(const DownloadsIndex &index, const QList<QByteArray> &downloading)
{
    // A file with a settle check due that the listing no longer holds keeps its last
    // size for that check.
    for (auto it = m_settleWork.cbegin(); it != m_settleWork.cend(); ++it) {
        const DownloadsIndex::Entry *before = m_index.find(it.key());
        if (index.find(it.key()))
            m_goneSizes.remove(it.key());
        else if (before)
            m_goneSizes.insert(it.key(), before->facts.size);
    }
    m_index = index;
    for (const QByteArray &name : downloading)
        scheduleSettleCheck(name);
    publish();
    emit scanFinished();
    // Not at once: `index` is still shared with the scanner's reply until this
    // returns, and changing the index then would copy all of it here.
    if ((!m_burst.isEmpty() || m_burstTooLarge) && !m_burstTimer->isActive())
        m_burstTimer->start();
}

void DownloadsStore::publish()
{
    QList<DownloadItem> items;
    for (const QByteArray &name : m_index.newest()) {
        const DownloadsIndex::Entry *entry = m_index.find(name);
        const QDateTime modified
            = QDateTime::fromMSecsSinceEpoch(entry->facts.modifiedNs / 1'000'000, QTimeZone::utc());
        items.append(
            { FolderEntries::urlOfPath(pathOf(name)), FolderEntries::readableName(name), modified, entry->status });
    }
    if (items != m_items) {
        m_items = std::move(items);
        emit itemsChanged();
    }
}

void DownloadsStore::scheduleSettleCheck(const QByteArray &name)
{
    // Each change pushes the check back: it runs only once the file has been quiet
    // for the whole delay.
    QTimer *&timer = m_settleWork[name];
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        timer->setInterval(settleDelayMs);
        connect(timer, &QTimer::timeout, this, [this, name] { settleCheck(name); });
    }
    timer->start();
}

void DownloadsStore::settleCheck(const QByteArray &name)
{
    const auto facts = FolderEntries::regularFile(pathOf(name));
    const qint64 size = facts ? facts->size : 0;
    const DownloadsIndex::Entry *entry = m_index.find(name);
    const auto gone = m_goneSizes.constFind(name);
    const std::optional<qint64> previous = entry ? std::optional(entry->facts.size)
        : gone != m_goneSizes.cend()             ? std::optional(*gone)
                                                 : std::nullopt;
    const auto status = DownloadRules::statusFor(previous, size);
    if (entry)
        m_index.settled(name, size, status);
    else
        m_goneSizes.insert(name, size);
    publish();
    emit settleChecked(FolderEntries::readableName(pathOf(name)));

    if (status == DownloadItem::Status::downloading) {
        scheduleSettleCheck(name);
        return;
    }
    // Settled: nothing about this file is kept beyond its entry in the index. This
    // runs inside the timer's own signal, so the timer goes once that returns.
    m_goneSizes.remove(name);
    if (QTimer *timer = m_settleWork.take(name))
        timer->deleteLater();
}

QByteArray DownloadsStore::pathOf(const QByteArray &name) const
{
    return FolderEntries::childPath(m_folderPath, name);
}

} // namespace ledgewise
