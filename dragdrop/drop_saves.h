// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_payload.h"
#include "dragdrop/drop_save_job.h"

#include <QObject>
#include <QPointer>

#include <atomic>
#include <deque>
#include <functional>
#include <thread>

namespace ledgewise {

// The saves of drops, one at a time in the order asked for, and what the surfaces show
// of them: whether one runs, how far it got, and a way to cancel. Owns its jobs; going
// away cancels them.
class DropSaves : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool saving READ saving NOTIFY changed)
    Q_PROPERTY(double fraction READ fraction NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)

public:
    // `folder` names the folder to save into when a save is asked for. What saves
    // interrupted by a crash left there is removed first, on a thread of its own;
    // saves asked for meanwhile wait for it.
    explicit DropSaves(std::function<QString()> folder, QObject *parent = nullptr);
    ~DropSaves() override;

    // Starts saving the drop, or queues it behind the save that runs.
    void save(const DropPayload &payload);
    // Stops the running save and drops the queued ones.
    Q_INVOKABLE void cancel();

    bool saving() const { return m_running != nullptr || !m_queue.empty(); }
    // 0 to 1.
    double fraction() const;
    // "Saving… 42 %".
    QString statusText() const;

signals:
    void changed();
    // Each save, as it ends.
    void finished(ledgewise::SaveOutcome outcome);

private:
    void startNext();

    std::function<QString()> m_folder;
    std::thread m_cleanup;
    std::atomic<bool> m_cleanedUp { false };
    QPointer<DropSaveJob> m_running;
    std::deque<std::pair<DropPayload, QString>> m_queue;
};

} // namespace ledgewise
