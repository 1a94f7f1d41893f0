#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

namespace ledgewise {

// Tells when the settings file may have been written by someone else: the user with a
// text editor, another program, a second Ledgewise. The file is replaced, not written
// in place, so its folder is watched; changes that come together are told once.
// Our own writes are told too: whoever listens compares before acting.
class SettingsFileWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SettingsFileWatcher(const QString &fileName, QObject *parent = nullptr);

signals:
    void changed();

private:
    void watchAgain();

    QString m_fileName;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
};

} // namespace ledgewise
