#include "Calendar.h"

#include <QDateTime>

#include <cmath>

namespace tarne {

Calendar::Calendar(QTimeZone timeZone, QLocale locale)
    : m_timeZone(std::move(timeZone)), m_locale(std::move(locale)) {}

Calendar Calendar::current() { return Calendar(QTimeZone::systemTimeZone(), QLocale::system()); }

DateComponents Calendar::dateComponents(Date date) const {
    const auto seconds = static_cast<qint64>(std::floor(date.secondsSince1970()));
    const QDateTime local = QDateTime::fromSecsSinceEpoch(seconds, m_timeZone);
    const QDate day = local.date();
    const QTime time = local.time();
    return {day.year(), day.month(), day.day(), time.hour(), time.minute(), time.second()};
}

} // namespace tarne
