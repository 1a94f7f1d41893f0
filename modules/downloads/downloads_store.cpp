#include "modules/downloads/downloads_store.h"

#include "platform/filesystem/folder_watcher.h"
#include "platform/xdg/standard_folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>
#include <QTimer>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace ledgewise {

namespace {

struct FolderEntry {
    QString path;
    QString name;
    qint64 size = 0;
    qint64 modifiedMs = 0; // a file on disk always has one
};

QString prefixed(const QString &folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

// The regular files of a folder's top level, with one lstat each: no folders, no
// symbolic links, no hidden (dot) names. Empty when the folder cannot be read.
QList<FolderEntry> regularFilesIn(const QString &folder)
{
    QList<FolderEntry> entries;
    const QByteArray encoded = QFile::encodeName(folder);
    DIR *dir = ::opendir(encoded.constData());
    if (!dir)
        return entries;
    const int dirFd = ::dirfd(dir);
    const QString prefix = prefixed(folder);
    while (const dirent *entry = ::readdir(dir)) {
        if (entry->d_name[0] == '.')
            continue;
        if (entry->d_type != DT_REG && entry->d_type != DT_UNKNOWN)
            continue;
        struct stat st {};
        if (::fstatat(dirFd, entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode))
            continue;
        const QString name = QFile::decodeName(entry->d_name);
        const qint64 modified = qint64(st.st_mtim.tv_sec) * 1000 + st.st_mtim.tv_nsec / 1'000'000;
        entries.append({prefix + name, name, qint64(st.st_size), modified});
    }
    ::closedir(dir);
    return entries;
}

} // namespace

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
    const QList<FolderEntry> entries = regularFilesIn(m_folder);

    // Every file is measured; only the newest few become items.
    QList<DownloadItem> all;
    all.reserve(entries.size());
    for (const FolderEntry &entry : entries) {
        const auto last = m_lastSizes.constFind(entry.path);
        const auto status =
            DownloadRules::statusFor(last == m_lastSizes.cend() ? std::nullopt : std::optional(*last), entry.size);
        m_lastSizes.insert(entry.path, entry.size);
        if (status == DownloadItem::Status::downloading)
            scheduleSettleCheck(entry.path);
        // The URL is made below, only for the few that are shown.
        all.append({QUrl(), entry.name, QDateTime::fromMSecsSinceEpoch(entry.modifiedMs, QTimeZone::utc()), status});
    }
    QList<DownloadItem> newest = DownloadRules::newestFirst(std::move(all));
    if (newest.size() > DownloadRules::maximumItems)
        newest.resize(DownloadRules::maximumItems);
    for (DownloadItem &item : newest)
        item.url = QUrl::fromLocalFile(prefixed(m_folder) + item.name);
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
