// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/downloads/downloads_index.h"

#include <QByteArray>
#include <QObject>

#include <atomic>
#include <memory>
#include <thread>

namespace ledgewise {

// Lists the Downloads folder on a thread of its own, so that a folder of a hundred
// thousand files never holds up the surfaces, and hands the new index back on the
// thread that owns it. One scan at a time: starting another cancels the one running,
// and a result that a newer request has overtaken is dropped. Destroying the scanner
// cancels and joins its thread; nothing it started reaches anyone afterwards.
class DownloadsScanner final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~DownloadsScanner() override;

    // `previous` gives the last sizes that the status rule compares with.
    void start(const QByteArray &folder, const DownloadsIndex &previous);
    bool isRunning() const { return m_running; }

signals:
    // A folder that cannot be listed gives an empty index. `downloading`: the names
    // whose size changed since `previous`.
    void finished(const DownloadsIndex &index, const QList<QByteArray> &downloading);

private:
    void cancelRunning();

    std::thread m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    quint64 m_generation = 0;
    bool m_running = false;
};

} // namespace ledgewise
