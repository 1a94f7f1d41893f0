// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <chrono>
#include <optional>

namespace ledgewise {

// When the next automatic update check is due: never in the first minute after start
// (the user came for the surfaces, not for the network), and at most once a day,
// counted from the last check, even across restarts.
namespace UpdateSchedule {

inline constexpr std::chrono::seconds quietAfterStart { 60 };
inline constexpr std::chrono::hours interval { 24 };

// The moment of the next automatic check. A last check in the future (the clock was
// set back) is not trusted, so it cannot hold checks off for years.
QDateTime nextCheck(const QDateTime &startedAt, const std::optional<QDateTime> &lastCheck, const QDateTime &now,
    std::chrono::milliseconds quiet = quietAfterStart);

// How long from `now` until `nextCheck`; zero when it is already due.
std::chrono::milliseconds delayUntil(const QDateTime &when, const QDateTime &now);

} // namespace UpdateSchedule

} // namespace ledgewise
