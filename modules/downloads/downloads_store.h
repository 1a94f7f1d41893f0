#pragma once

#include "modules/downloads/download_item.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <optional>

class QTimer;

namespace ledgewise {

class FolderWatcher;

// The newest files of the Downloads folder, and whether each is still growing.
// Rescans the folder's top level on every change in it; a file whose size changed is
// measured again 0.6 s after its last change, until two measurements agree.
class DownloadsStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)

public:
    static constexpr int settleDelayMs = 600;

    // No folder: the user's Downloads folder. No watcher: nothing is watched.
    DownloadsStore(std::optional<QString> folder, std::unique_ptr<FolderWatcher> watcher,
                   QObject *parent = nullptr);
    ~DownloadsStore() override;

    // The store the application runs: the Downloads folder, watched through inotify.
    static std::unique_ptr<DownloadsStore> createWatching(QObject *parent = nullptr);

    const QList<DownloadItem> &items() const { return m_items; }
    int count() const { return int(m_items.size()); }
    QString folder() const { return m_folder; }
    bool isWatching() const;

    // One full rescan (also what every folder change runs).
    void refresh();

signals:
    void itemsChanged();
    // A settle check ran for this file (its status may or may not have changed).
    void settleChecked(const QString &path);

private:
    void scheduleSettleCheck(const QString &path);
    void settleCheck(const QString &path);

    QString m_folder;
    std::unique_ptr<FolderWatcher> m_watcher;
    QList<DownloadItem> m_items;
    QHash<QString, qint64> m_lastSizes;
    QHash<QString, QTimer *> m_settleWork;
};

} // namespace ledgewise
