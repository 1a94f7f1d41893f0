#pragma once

#include <QObject>
#include <QString>

class QSocketNotifier;

namespace ledgewise {

// Tells when anything in a folder's top level changes: an entry added, removed or
// renamed, or a file in it written to, grown or touched. Events that arrive together
// are reported as one.
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
    void changed();
};

// The real one, on inotify. Unlike a directory watch through QFileSystemWatcher it also
// hears writes into files of the folder, which is how a growing download shows.
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
