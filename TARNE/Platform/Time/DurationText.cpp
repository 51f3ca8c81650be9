#include "DurationText.h"

#include "WholeNumber.h"

using namespace Qt::StringLiterals;

namespace tarne {

QString hoursMinutesSeconds(double seconds) {
    const qint64 total = saturatedWholeNumber(seconds);
    return QString::asprintf("%02lld:%02lld:%02lld", total / 3600, total % 3600 / 60, total % 60);
}

} // namespace tarne
