#include "modules/downloads/downloads_store.h"

#include "platform/filesystem/folder_watcher.h"
#include "platform/xdg/standard_folders.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

namespace ledgewise {

DownloadsStore::DownloadsStore(std::optional<QString> folder, std::unique_ptr<FolderWatcher> watcher,
                               QObject *parent)
    : QObject(parent)
    , m_folder(folder.value_or(StandardFolders::downloads()))
    , m_watcher(std::move(watcher))
{
    refresh();
    if (m_watcher) {
        connect(m_watcher.get(), &FolderWatcher::changed, this, &DownloadsStore::refresh);
        m_watcher->watch(m_folder);
    }
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

void DownloadsStore::refresh()
{
    // Regular files of the top level only: no folders, no symbolic links, and no hidden
    // names (QDir leaves out dot files unless asked for them).
    const QDir dir(m_folder);
    const QFileInfoList entries = dir.exists()
        ? dir.entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Unsorted)
        : QFileInfoList();

    QList<DownloadItem> scanned;
    scanned.reserve(entries.size());
    for (const QFileInfo &info : entries) {
        if (!info.isFile() || info.isHidden())
            continue;
        const QString path = info.absoluteFilePath();
        const qint64 size = info.size();
        const auto last = m_lastSizes.constFind(path);
        const auto status =
            DownloadRules::statusFor(last == m_lastSizes.cend() ? std::nullopt : std::optional(*last), size);
        m_lastSizes.insert(path, size);
        if (status == DownloadItem::Status::downloading)
            scheduleSettleCheck(path);
        scanned.append({QUrl::fromLocalFile(path), info.fileName(),
                        info.fileTime(QFileDevice::FileModificationTime), status});
    }

    QList<DownloadItem> newest = DownloadRules::newestFirst(std::move(scanned));
    if (newest.size() > DownloadRules::maximumItems)
        newest.resize(DownloadRules::maximumItems);
    if (newest != m_items) {
        m_items = std::move(newest);
        emit itemsChanged();
    }
}

void DownloadsStore::scheduleSettleCheck(const QString &path)
{
    // Each change pushes the check back: it runs only once the file has been quiet
    // for the whole delay.
    QTimer *&timer = m_settleWork[path];
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        timer->setInterval(settleDelayMs);
        connect(timer, &QTimer::timeout, this, [this, path] { settleCheck(path); });
    }
    timer->start();
}

void DownloadsStore::settleCheck(const QString &path)
{
    const QFileInfo info(path);
    const qint64 size = info.exists() ? info.size() : 0;
    const auto last = m_lastSizes.constFind(path);
    const std::optional<qint64> previous = last == m_lastSizes.cend() ? std::nullopt : std::optional(*last);
    m_lastSizes.insert(path, size);

    const auto status = DownloadRules::statusFor(previous, size);
    const QUrl url = QUrl::fromLocalFile(path);
    for (DownloadItem &item : m_items) {
        if (item.url == url) {
            if (item.status != status) {
                item.status = status;
                emit itemsChanged();
            }
            break;
        }
    }
    emit settleChecked(path);
    if (status == DownloadItem::Status::downloading)
        scheduleSettleCheck(path);
}

} // namespace ledgewise
