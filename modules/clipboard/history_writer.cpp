// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/history_writer.h"

#include <QSaveFile>

#include <mutex>
#include <optional>

namespace ledgewise {

struct HistoryWriter::Pending {
    std::mutex mutex;
    std::optional<QList<ClipboardItem>> newest;
    bool writing = false;
};

namespace {

bool writeHistoryFile(const QString &path, const QList<ClipboardItem> &items)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // What people copy is private.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (!writeHistory(file, items)) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace

HistoryWriter::HistoryWriter(QString path, QObject *parent)
    : QObject(parent)
    , m_path(std::move(path))
    , m_pending(std::make_shared<Pending>())
{
    // One thread, so writes never overlap; it ends by itself after a while of nothing
    // to do, so an idle program keeps no thread awake.
    m_thread.setMaxThreadCount(1);
}

HistoryWriter::~HistoryWriter()
{
    flush();
}

void HistoryWriter::save(const QList<ClipboardItem> &items)
{
    {
        std::lock_guard lock(m_pending->mutex);
        m_pending->newest = items;
        if (m_pending->writing)
            return; // the running write picks it up when it is done
        m_pending->writing = true;
    }
    // The task holds the shared state, not this object; it reports back through a queued
    // call on this object, which the destructor outlives by waiting for the task.
    m_thread.start([pending = m_pending, path = m_path, self = this] {
        for (;;) {
            QList<ClipboardItem> items;
            {
                std::lock_guard lock(pending->mutex);
                if (!pending->newest) {
                    pending->writing = false;
                    return;
                }
                items = std::move(*pending->newest);
                pending->newest.reset();
            }
            if (writeHistoryFile(path, items))
                QMetaObject::invokeMethod(self, &HistoryWriter::saved, Qt::QueuedConnection);
        }
    });
}

void HistoryWriter::flush()
{
    m_thread.waitForDone();
}

} // namespace ledgewise
