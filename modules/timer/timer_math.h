// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ledgewise::TimerMath {

// The clock text of a number of seconds, "m:ss", rounded up so that it never reads
// 0:00 while time is left and a fresh five minutes reads 5:00. Minutes go past 59.
QString formatted(double seconds);

} // namespace ledgewise::TimerMath
