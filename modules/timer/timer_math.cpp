// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/timer/timer_math.h"

#include <QtGlobal>

#include <cmath>

namespace ledgewise::TimerMath {

QString formatted(double seconds)
{
    // 2^63: the first whole number past what 64 bits hold; the conversion below is only
    // defined for values inside that range.
    constexpr double limit = 9223372036854775808.0;
    const double rounded = std::ceil(seconds);
    // Written so that NaN fails it too. Every caller passes a finite, bounded number
    // of seconds, so anything else is a bug to stop at, in release builds as well.
    if (!(rounded >= -limit && rounded < limit))
        qFatal("TimerMath::formatted: %g seconds is not a finite number of seconds within 64 bits", seconds);
    const qint64 total = qint64(rounded);
    const qint64 minutes = total / 60;
    const qint64 secs = total - minutes * 60;
    return QString::asprintf("%lld:%02lld", static_cast<long long>(minutes), static_cast<long long>(secs));
}

} // namespace ledgewise::TimerMath
