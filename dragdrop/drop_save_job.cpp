// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_save_job.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>

namespace ledgewise {

namespace {

// Often enough for a bar to move smoothly, rarely enough to cost the interface nothing.
constexpr std::chrono::milliseconds progressInterval(100);

} // namespace

DropSaveJob::DropSaveJob(DropPayload payload, QString folder, QObject *parent)
    : QObject(parent)
    , m_saver(std::move(payload), std::move(folder))
{ }

DropSaveJob::~DropSaveJob()
{
    m_cancelled = true;
    if (m_worker.joinable())
        m_worker.join();
    // Progress and the result the worker posted meanwhile die with this object.
}

void DropSaveJob::start()
{
    if (m_worker.joinable())
        return;
    m_worker = std::thread([this] {
        // A save may take minutes; the surfaces and every other program come first.
        ::setpriority(PRIO_PROCESS, ::gettid(), 10);
        auto lastReport = std::chrono::steady_clock::now() - progressInterval;
        const auto report = [this, &lastReport](qint64 done, qint64 total) {
            const auto now = std::chrono::steady_clock::now();
            if (now - lastReport < progressInterval && done < total)
                return;
            lastReport = now;
            QMetaObject::invokeMethod(
                this,
                [this, done, total] {
                    m_done = done;
                    m_total = total;
                    emit progressed(done, total);
                },
                Qt::QueuedConnection);
        };
        const SaveOutcome outcome = m_saver.run(m_cancelled, report);
        QMetaObject::invokeMethod(
            this,
            [this, outcome] {
                m_outcome = outcome;
                emit finished(outcome);
            },
            Qt::QueuedConnection);
    });
}

void DropSaveJob::cancel()
{
    m_cancelled = true;
}

} // namespace ledgewise
