// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/instance_lock.h"

#include <QDir>
#include <QFile>

namespace ledgewise {

namespace {

constexpr auto lockFileName = "ledgewise.lock";

} // namespace

InstanceLock::InstanceLock(const QString &folder)
    : m_path(QDir(folder).filePath(QString::fromLatin1(lockFileName)))
    , m_file(m_path)
{
    // Held for as long as Ledgewise runs, which may be weeks: age alone never makes it
    // stale, only a holder that is gone.
    m_file.setStaleLockTime(0);
}

InstanceLock::Outcome InstanceLock::tryLock()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QDir(folder).exists()) {
        // The folder of the user's private data: owner only, as its other files.
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    if (m_file.isLocked() || m_file.tryLock(0))
        return Outcome::held;
    return m_file.error() == QLockFile::LockFailedError ? Outcome::heldByOther : Outcome::unavailable;
}

qint64 InstanceLock::holder() const
{
    if (m_file.isLocked())
        return 0;
    qint64 pid = 0;
    QString hostname;
    QString application;
    return m_file.getLockInfo(&pid, &hostname, &application) ? pid : 0;
}

} // namespace ledgewise
