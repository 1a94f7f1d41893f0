#include "modules/timer/timer_math.h"

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace ledgewise::TimerMath {

QString formatted(double seconds)
{
    const double rounded = std::ceil(seconds);
    Q_ASSERT_X(std::isfinite(rounded) && rounded >= double(std::numeric_limits<qint64>::min())
                   && rounded < double(std::numeric_limits<qint64>::max()),
               "TimerMath::formatted", "seconds must be finite and fit 64 bits");
    if (!std::isfinite(rounded))
        return QStringLiteral("0:00");
    const qint64 total = qint64(rounded);
    const qint64 minutes = total / 60;
    const qint64 secs = total - minutes * 60;
    return QString::asprintf("%lld:%02lld", static_cast<long long>(minutes), static_cast<long long>(secs));
}

} // namespace ledgewise::TimerMath
