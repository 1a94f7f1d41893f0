// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_saver.h"

#include <QObject>

#include <atomic>
#include <optional>
#include <thread>

namespace ledgewise {

// One save of a drop on a worker thread, so that copying a large file or folder never
// holds up the surfaces. Progress arrives on the owner's thread a few times a second.
// Destroying the job cancels it and waits for the worker, which then removes what it
// had not finished: no callback ever reaches a job that is gone.
class DropSaveJob : public QObject
{
    Q_OBJECT

public:
    DropSaveJob(DropPayload payload, QString folder, QObject *parent = nullptr);
    ~DropSaveJob() override;

    void start();
    // Asks the worker to stop; `finished` follows with `cancelled` (or with how it
    // ended, when it was already done).
    void cancel();

    qint64 bytesDone() const { return m_done; }
    qint64 bytesTotal() const { return m_total; }
    std::optional<SaveOutcome> outcome() const { return m_outcome; }

signals:
    void progressed(qint64 done, qint64 total);
    void finished(ledgewise::SaveOutcome outcome);

private:
    DropSaver m_saver;
    std::atomic<bool> m_cancelled { false };
    std::thread m_worker;
    qint64 m_done = 0;
    qint64 m_total = 0;
    std::optional<SaveOutcome> m_outcome;
};

} // namespace ledgewise
