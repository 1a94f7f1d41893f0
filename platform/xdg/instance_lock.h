// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QString>

namespace ledgewise {

// One Ledgewise at a time per user's data, bus or no bus: a lock file next to the
// clipboard history it protects, held for the life of the process. A lock left by a
// process that is gone (killed, crashed) is taken over; the kernel's lock on the open
// file keeps a live holder's lock from ever being judged stale.
class InstanceLock
{
public:
    // `folder` holds the lock file; created (0700) when missing.
    explicit InstanceLock(const QString &folder);
    InstanceLock(const InstanceLock &) = delete;
    InstanceLock &operator=(const InstanceLock &) = delete;

    enum class Outcome {
        held, // this process holds the lock now
        heldByOther, // another live process holds it
        unavailable, // no lock file can be made there (a read-only folder, say)
    };
    Outcome tryLock();
    QString path() const { return m_path; }
    // The holder's process id when another process holds the lock, else 0.
    qint64 holder() const;

private:
    QString m_path;
    QLockFile m_file;
};

} // namespace ledgewise
