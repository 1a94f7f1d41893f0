// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/update_schedule.h"

#include <algorithm>

namespace ledgewise::UpdateSchedule {

QDateTime nextCheck(const QDateTime &startedAt, const std::optional<QDateTime> &lastCheck, const QDateTime &now,
    std::chrono::milliseconds quiet)
{
    const QDateTime earliest = startedAt.addMSecs(quiet.count());
    if (!lastCheck || !lastCheck->isValid() || *lastCheck > now)
        return earliest;
    const QDateTime dayAfter = lastCheck->addSecs(std::chrono::duration_cast<std::chrono::seconds>(interval).count());
    return std::max(earliest, dayAfter);
}

std::chrono::milliseconds delayUntil(const QDateTime &when, const QDateTime &now)
{
    return std::chrono::milliseconds(std::max<qint64>(0, now.msecsTo(when)));
}

} // namespace ledgewise::UpdateSchedule
