// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_saves.h"

#include "dragdrop/drop_save_job.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace ledgewise {

DropSaves::DropSaves(std::function<QString()> folder, QObject *parent)
    : QObject(parent)
    , m_folder(std::move(folder))
{
    m_cleanup = std::thread([this, folder = m_folder ? m_folder() : QString()] {
        if (!folder.isEmpty())
            DropSaver::removeLeftovers(folder);
        m_cleanedUp = true;
    });
}

DropSaves::~DropSaves()
{
    m_queue.clear();
    delete m_running; // cancels and waits for its worker
    m_cleanup.join();
}

void DropSaves::save(const DropPayload &payload)
{
    m_queue.emplace_back(payload, m_folder ? m_folder() : QString());
    if (!m_running)
        startNext();
}

void DropSaves::cancel()
{
    m_queue.clear();
    if (m_running)
        m_running->cancel();
}

double DropSaves::fraction() const
{
    if (!m_running || m_running->bytesTotal() <= 0)
        return 0;
    return std::clamp(double(m_running->bytesDone()) / double(m_running->bytesTotal()), 0.0, 1.0);
}

QString DropSaves::statusText() const
{
    return QStringLiteral("Saving… %1 %").arg(int(std::floor(fraction() * 100)));
}

void DropSaves::startNext()
{
    if (m_queue.empty()) {
        emit changed();
        return;
    }
    // A leftover is removed by name: no save may make its own temporary before then.
    if (!m_cleanedUp) {
        QTimer::singleShot(20, this, [this] {
            if (!m_running)
                startNext();
        });
        emit changed();
        return;
    }
    auto [payload, folder] = std::move(m_queue.front());
    m_queue.pop_front();
    auto *job = new DropSaveJob(std::move(payload), std::move(folder), this);
    m_running = job;
    connect(job, &DropSaveJob::progressed, this, &DropSaves::changed);
    connect(job, &DropSaveJob::finished, this, [this, job](SaveOutcome outcome) {
        // The job is in the middle of telling us: let it finish before it goes.
        job->deleteLater();
        if (m_running == job)
            m_running = nullptr;
        emit finished(outcome);
        startNext();
    });
    job->start();
    emit changed();
}

} // namespace ledgewise
