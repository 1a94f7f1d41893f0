// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

namespace ledgewise {

// Tells when the settings file may have been written by someone else: the user with a
// text editor, another program, a second Ledgewise. The file is replaced, not written
// in place, so its folder is watched too; changes that come together are told once,
// and only when the file's contents can have changed (its modification time, size or
// identity), not when only its mode was set again. Our own writes are told too:
// whoever listens compares before acting.
class SettingsFileWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SettingsFileWatcher(const QString &fileName, QObject *parent = nullptr);

signals:
    void changed();

private:
    // What tells one version of the file from another.
    struct Stamp {
        bool exists = false;
        qint64 modifiedNanoseconds = 0;
        qint64 size = 0;
        quint64 inode = 0;
        friend bool operator==(const Stamp &, const Stamp &) = default;
    };

    Stamp stamp() const;
    void watchAgain();
    void settled();

    QString m_fileName;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    Stamp m_last;
};

} // namespace ledgewise
