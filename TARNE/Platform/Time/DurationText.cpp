#include "DurationText.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarne {

qint64 wholeSeconds(double seconds) {
    if (std::isnan(seconds))
        return 0;
    if (seconds >= 0x1p63)
        return std::numeric_limits<qint64>::max();
    if (seconds < -0x1p63)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(seconds);
}

QString hoursMinutesSeconds(double seconds) {
    const qint64 total = wholeSeconds(seconds);
    return QString::asprintf("%02lld:%02lld:%02lld", total / 3600, total % 3600 / 60, total % 60);
}

} // namespace tarne
