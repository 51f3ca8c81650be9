#include "Calendar.h"

#include "ZoneOffsets.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <mutex>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr qint64 secondsOfDay = 86400;
constexpr qint64 julianDayOfUnixEpoch = 2440588;
constexpr double farthestSeconds = 1e5 * 366 * secondsOfDay;

qint64 wholeUnixSeconds(Date date) {
    const double seconds = date.secondsSince1970();
    if (std::isnan(seconds))
        return static_cast<qint64>(Date::unixSecondsOfReferenceDate);
    return static_cast<qint64>(std::floor(std::clamp(seconds, -farthestSeconds, farthestSeconds)));
}

qint64 floorDiv(qint64 a, qint64 b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

/// A wall clock's reading as a day and the seconds since that day's midnight.
struct WallClock {
    QDate day;
    qint64 secondOfDay;

    static WallClock of(qint64 wallSeconds) {
        const qint64 days = floorDiv(wallSeconds, secondsOfDay);
        return {QDate::fromJulianDay(julianDayOfUnixEpoch + days),
                wallSeconds - days * secondsOfDay};
    }
    qint64 wallSeconds() const {
        return (day.toJulianDay() - julianDayOfUnixEpoch) * secondsOfDay + secondOfDay;
    }
};

/// Whether the day exists and lies so near that its moments have a zone's offset.
bool isReckoned(QDate day) {
    return day.isValid() && std::abs(day.year()) <= 100'000;
}

/// The offsets of a zone, kept for the zone that was asked for last: a process has one.
std::shared_ptr<const ZoneOffsets> offsetsOf(const QTimeZone &zone) {
    static std::mutex mutex;
    static QTimeZone lastZone;
    static std::shared_ptr<const ZoneOffsets> lastOffsets;
    const std::lock_guard lock(mutex);
    if (!lastOffsets || lastZone != zone) {
        lastZone = zone;
        lastOffsets = std::make_shared<ZoneOffsets>(zone);
    }
    return lastOffsets;
}

/// The user's time zone, as the C library takes it from the environment. Qt alone knows the names
/// of zones and a link at /etc/localtime; a path it takes for a name, and "UTC-3", which lies to
/// the east of UTC, for an offset of its own writing.
QTimeZone currentTimeZone() {
    QByteArray zone = qgetenv("TZ");
    if (zone.isEmpty())
        return qEnvironmentVariableIsSet("TZ") ? QTimeZone::utc() : QTimeZone::systemTimeZone();
    if (zone.startsWith(':'))
        zone.remove(0, 1);
    if (zone.startsWith('/')) {
        // Qt reads a zone's file by its path from /usr/share/zoneinfo. Links are followed here,
        // since it keeps what it has read under a name.
        const QString file = QFileInfo(QFile::decodeName(zone)).canonicalFilePath();
        return QTimeZone("../../.." + QFile::encodeName(file));
    }
    static const QRegularExpression offsetFromUtc(u"^<?(?:UTC|GMT)>?(?=[-+]?[0-9])"_s);
    const QString name = QString::fromLatin1(zone);
    const QRegularExpressionMatch match = offsetFromUtc.match(name);
    return QTimeZone(match.hasMatch() ? "STD" + zone.sliced(match.capturedLength()) : zone);
}

/// The locale by which the user reads dates. QLocale::system() looks at the environment once.
QLocale currentLocale() {
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QByteArray name = qgetenv(variable);
        if (name.isEmpty())
            continue;
        const QLocale locale(QString::fromLatin1(name));
        if (locale.language() != QLocale::C)
            return locale;
        break;
    }
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

} // namespace

int daysIntoWeek(QDate day, const QLocale &locale) {
    return (day.dayOfWeek() - static_cast<int>(locale.firstDayOfWeek()) + 7) % 7;
}

Calendar::Calendar(const QTimeZone &timeZone, const QLocale &locale)
    : m_timeZone(timeZone.isValid() ? timeZone : QTimeZone::utc()),
      m_locale(locale),
      m_offsets(offsetsOf(m_timeZone)) {}

Calendar Calendar::current() {
    return Calendar(currentTimeZone(), currentLocale());
}

DateComponents Calendar::dateComponents(Date date) const {
    const qint64 seconds = wholeUnixSeconds(date);
    const WallClock wall = WallClock::of(seconds + m_offsets->offsetAt(seconds));
    const int second = static_cast<int>(wall.secondOfDay);
    const auto [year, month, day] = QCalendar().partsFromDate(wall.day);
    return {year, month, day, second / 3600, second / 60 % 60, second % 60};
}

std::optional<Date> Calendar::date(const DateComponents &components) const {
    const QDate day(components.year, components.month, components.day);
    if (!isReckoned(day) || !QTime::isValid(components.hour, components.minute, components.second))
        return std::nullopt;
    const WallClock wall{day, components.hour * 3600 + components.minute * 60 + components.second};
    // No zone has this offset, so of two moments none is preferred.
    constexpr int noOffset = secondsOfDay;
    const qint64 moment = m_offsets->resolve(wall.wallSeconds(), noOffset).moment;
    return Date::fromUnixSeconds(static_cast<double>(moment));
}

std::optional<Date> Calendar::dateByAdding(Unit unit, int value, Date date) const {
    if (unit == Unit::hour)
        return date + value * 3600.0;
    const qint64 seconds = wholeUnixSeconds(date);
    const int offset = m_offsets->offsetAt(seconds);
    WallClock wall = WallClock::of(seconds + offset);
    switch (unit) {
    case Unit::hour:
    case Unit::day:
        wall.day = wall.day.addDays(value);
        break;
    case Unit::weekOfYear:
        wall.day = wall.day.addDays(qint64{value} * 7);
        break;
    case Unit::month:
        wall.day = wall.day.addMonths(value);
        break;
    case Unit::year:
        wall.day = wall.day.addYears(value);
        break;
    }
    if (!isReckoned(wall.day))
        return std::nullopt;
    const ZoneOffsets::WallTime resolved = m_offsets->resolve(wall.wallSeconds(), offset);
    qint64 moment = resolved.moment;
    if (value < 0 && resolved.momentBeforeGap != moment &&
        WallClock::of(moment + m_offsets->offsetAt(moment)).day != wall.day)
        moment = resolved.momentBeforeGap;
    if (std::abs(static_cast<double>(moment)) > farthestSeconds)
        return std::nullopt;
    return date + static_cast<double>(moment - seconds);
}

QDate Calendar::day(Date date) const {
    const qint64 seconds = wholeUnixSeconds(date);
    return WallClock::of(seconds + m_offsets->offsetAt(seconds)).day;
}

Date Calendar::startOfDay(Date date) const {
    const qint64 seconds = wholeUnixSeconds(date);
    const ZoneOffsets::Stretch stretch = m_offsets->stretchAt(seconds);
    const QDate today = WallClock::of(seconds + stretch.offset).day;
    const qint64 midnight = WallClock{today, 0}.wallSeconds();
    qint64 moment = midnight - stretch.offset;
    if (moment < stretch.begin + secondsOfDay) {
        // The offset changed not long before: the day may have begun under another one, with the
        // change itself, or twice.
        constexpr int noOffset = secondsOfDay;
        const ZoneOffsets::WallTime resolved = m_offsets->resolve(midnight, noOffset);
        moment = resolved.moment == resolved.momentBeforeGap
                     ? resolved.moment
                     : m_offsets->stretchAt(resolved.moment).begin;
    }
    return Date::fromUnixSeconds(static_cast<double>(moment));
}

qint64 Calendar::daysBetween(Date from, Date to) const {
    const qint64 days = day(from).daysTo(day(to));
    if (std::abs(days) < 2)
        return days;
    const qint64 fewer = days > 0 ? days - 1 : days + 1;
    const auto arrival = dateByAdding(Unit::day, static_cast<int>(fewer), startOfDay(from));
    return arrival && isDateInSameDay(*arrival, to) ? fewer : days;
}

bool Calendar::isDateInSameDay(Date date, Date other) const {
    return day(date) == day(other);
}

bool Calendar::isDateInYesterday(Date date, Date now) const {
    const std::optional<Date> yesterday = dateByAdding(Unit::day, -1, startOfDay(now));
    return yesterday && isDateInSameDay(date, *yesterday);
}

bool Calendar::isDateEqual(Date date, Date other, Granularity granularity) const {
    const QDate a = day(date);
    const QDate b = day(other);
    switch (granularity) {
    case Granularity::day:
        return a == b;
    case Granularity::weekOfYear:
        return a.addDays(-daysIntoWeek(a, m_locale)) == b.addDays(-daysIntoWeek(b, m_locale));
    case Granularity::year:
        return a.year() == b.year();
    }
    Q_UNREACHABLE();
}

int Calendar::weekday(Date date) const {
    return day(date).dayOfWeek() % 7 + 1;
}

} // namespace tarne
