// Every time zone of the system over two years: what TARNE makes of days and clock times is what
// Python's zoneinfo makes of them, which shares no code with it. zone_reference.py tells.

#include "DateFormatter.h"
#include "InsightsFigures.h"
#include "NotificationSchedule.h"
#include "Rounds.h"
#include "ScheduledGoal.h"

#include <gtest/gtest.h>

#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <sstream>
#include <string>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array weekdays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                              "Friday", "Saturday", "Sunday"};
constexpr int daysOfFlatMap = 365;
constexpr const char *everyNth = rounds(10) == 10 ? "1" : "10";

Date unix(qint64 seconds) {
    return Date::fromUnixSeconds(static_cast<double>(seconds));
}

/// One zone as the reference tells it, and the questions to TARNE about it.
class Zone {
public:
    explicit Zone(const std::string &name)
        : m_name(name),
          m_calendar(QTimeZone(QByteArray::fromStdString(name)),
                     QLocale(QLocale::English, QLocale::UnitedStates)),
          m_formatter(m_calendar) {
        EXPECT_TRUE(m_calendar.timeZone().isValid()) << name;
    }

    void day(std::istringstream &told) {
        int year = 0, month = 0, number = 0, weekday = 0;
        qint64 seconds = 0;
        told >> year >> month >> number >> weekday >> seconds;
        const QDate date(year, month, number);
        const Date start = unix(seconds);
        expect(m_calendar.day(start) == date, "the day of its start", date);
        expect(m_calendar.startOfDay(start) == start, "its start", date);
        expect(m_calendar.startOfDay(start + 3600.0) == start, "the start of its first hour", date);
        expect(m_calendar.weekday(start) == (weekday + 1) % 7 + 1, "its weekday", date);
        if (!m_starts.empty()) {
            const Date before = m_starts.rbegin()->second;
            expect(m_calendar.startOfDay(start - 1.0) == before, "the start of the day before",
                   date);
            expect(m_calendar.daysBetween(before, start) == 1, "a day after the one before", date);
            expect(!m_calendar.isDateInSameDay(start - 0.001, start), "a day of its own", date);
            expect(m_calendar.isDateInYesterday(start - 1.0, start), "its yesterday", date);
        }
        expectTexts(date, start, weekday);
        m_starts.emplace(date, start);
    }

    void reading(std::istringstream &told) {
        DateComponents clock;
        qint64 first = 0, last = 0;
        int shown = 0;
        told >> clock.year >> clock.month >> clock.day >> clock.hour >> clock.minute >> first >>
            last >> shown;
        const QDate date(clock.year, clock.month, clock.day);
        expect(m_calendar.date(clock) == unix(first), "the moment of a reading", date, clock.hour);
        std::vector<Date> both{unix(first)};
        if (last != first)
            both.push_back(unix(last));
        expect(momentsOf(clock, m_calendar) == both, "the moments of a reading", date, clock.hour);
        expectReminder(clock, unix(first), date);
        const DateComponents later = m_calendar.dateComponents(unix(first));
        expect(later.hour * 60 + later.minute == shown, "what is shown", date, clock.hour);
        ++readings;
    }

    void moment(std::istringstream &told) {
        qint64 seconds = 0;
        DateComponents shown;
        told >> seconds >> shown.year >> shown.month >> shown.day >> shown.hour >> shown.minute >>
            shown.second;
        const QDate date(shown.year, shown.month, shown.day);
        expect(m_calendar.dateComponents(unix(seconds)) == shown, "what the clock shows", date,
               shown.hour);
        const QString hour = QString::number((shown.hour + 11) % 12 + 1);
        const QString minute = QString::number(shown.minute).rightJustified(2, u'0');
        expect(m_formatter.shortTime(unix(seconds)) ==
                   hour + u':' + minute + (shown.hour < 12 ? u" AM"_s : u" PM"_s),
               "the text of a time", date, shown.hour);
        ++moments;
    }

    /// With all its days: streaks and heat maps.
    void finish() {
        if (m_starts.empty())
            return;
        // A session at each day's first moment, or at its last.
        for (const double shift : {0.0, -1.0}) {
            std::vector<SessionOutcome> history;
            for (auto start = std::next(m_starts.begin()); start != m_starts.end(); ++start)
                history.push_back({.sessionDate = start->second + shift, .goals = {}});
            const int days = static_cast<int>(history.size());
            const Date now = history.back().sessionDate;
            const InsightsFigures whole(history, m_calendar, now);
            expect(whole.calculateLongestStreak() == days, "the longest streak");
            expect(whole.calculateCurrentStreak() == days, "the current streak");
            history.erase(history.begin() + days / 3);
            const InsightsFigures broken(history, m_calendar, now);
            expect(broken.calculateLongestStreak() == days - days / 3 - 1, "a streak after a gap");
            expect(broken.calculateCurrentStreak() == days - days / 3 - 1, "a streak up to a gap");
        }
        // By its rule the map is reckoned from the present clock time, and no zone skips a noon.
        const QDate today = std::prev(m_starts.end())->first;
        const auto noon = m_calendar.date({today.year(), today.month(), today.day(), 12});
        const std::vector<SessionOutcome> none;
        expectMaps(InsightsFigures(none, m_calendar, noon.value()), today);
    }

    [[nodiscard]] std::size_t days() const { return m_starts.size(); }

    qint64 readings = 0;
    qint64 moments = 0;
    qint64 differences = 0;

private:
    void expect(bool holds, const char *what, QDate date = {}, int hour = -1) {
        if (holds)
            return;
        ++differences;
        if (differences <= 5)
            ADD_FAILURE() << m_name << ": " << what << ", "
                          << qPrintable(date.toString(Qt::ISODate)) << ", hour " << hour;
    }

    void expectTexts(QDate date, Date start, int weekday) {
        const QString month =
            QLatin1StringView(months.at(static_cast<std::size_t>(date.month() - 1)));
        const QString day = QString::number(date.day());
        const QString whole = month + u' ' + day + u", "_s + QString::number(date.year());
        expect(m_formatter.shortMonth(start) == month, "its month's name", date);
        expect(m_formatter.monthAndDay(start) == month + u' ' + day, "its short text", date);
        expect(m_formatter.monthDayAndYear(start) == whole, "its text", date);
        expect(m_formatter.weekdayName(start) ==
                   QLatin1StringView(weekdays.at(static_cast<std::size_t>(weekday))),
               "its weekday's name", date);
        expect(m_formatter.fromMonthDayAndYear(whole) == start, "the day of its text", date);
    }

    /// A planned goal of that day and clock time, which were picked at other moments.
    void expectReminder(const DateComponents &clock, Date first, QDate date) {
        const auto noon = m_calendar.date({clock.year, clock.month, clock.day, 12});
        const auto picked = m_calendar.date({2025, 1, 15, clock.hour, clock.minute, 40});
        if (!noon || !picked || m_calendar.day(*noon) != date)
            return; // The zone leaves the day out.
        const ScheduledGoal goal(*noon, *picked, {});
        expect(goal.scheduledDateTime(m_calendar) == first, "a goal's start", date, clock.hour);
        expect(goal.notificationDateTime(m_calendar) == first - 3600.0, "a goal's reminder", date,
               clock.hour);
    }

    void expectMaps(const InsightsFigures &figures, QDate today) {
        std::vector<Date> cells;
        for (const WeekData &week : figures.weeklyData()) {
            for (const HeatmapDayData &cell : week.days) {
                if (!cell.isFuture)
                    cells.push_back(cell.date);
            }
        }
        expectDaysUpTo(today, cells, "a cell of the heat map");
        cells.clear();
        for (const HeatmapDayData &cell : figures.generateHeatmapData())
            cells.push_back(cell.date);
        expect(cells.size() == daysOfFlatMap, "the cells of the flat heat map");
        expectDaysUpTo(today, cells, "a cell of the flat heat map");
    }

    /// The cells are the starts of all days up to today. In place of a day that the zone leaves
    /// out a neighbour of it comes twice.
    void expectDaysUpTo(QDate today, std::vector<Date> cells, const char *what) {
        const auto all = static_cast<qint64>(cells.size());
        cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
        auto day = m_starts.find(today);
        for (auto cell = cells.rbegin(); cell != cells.rend(); ++cell, --day) {
            expect(day->second == *cell, what, day->first);
            if (day == m_starts.begin())
                return;
        }
        const QDate first = std::next(day)->first;
        expect(first.daysTo(today) + 1 == all, "the number of cells", first);
    }

    std::string m_name;
    Calendar m_calendar;
    DateFormatter m_formatter;
    std::map<QDate, Date> m_starts;
};

class Zones : public testing::TestWithParam<const char *> {};

TEST_P(Zones, HaveTheDaysAndClockTimesThatAnotherLibraryReckons) {
    const std::string command = std::string(TARNE_ZONE_REFERENCE " ") + GetParam() + ' ' + everyNth;
    const std::unique_ptr<FILE, int (*)(FILE *)> reference(popen(command.c_str(), "r"), pclose);
    ASSERT_TRUE(reference);
    qint64 zones = 0, days = 0, readings = 0, moments = 0, differences = 0;
    std::unique_ptr<Zone> zone;
    const auto finish = [&] {
        if (!zone)
            return;
        zone->finish();
        ++zones;
        days += static_cast<qint64>(zone->days());
        readings += zone->readings;
        moments += zone->moments;
        differences += zone->differences;
    };
    std::array<char, 256> line{};
    while (fgets(line.data(), line.size(), reference.get()) != nullptr) {
        std::istringstream told(line.data());
        char kind = 0;
        told >> kind;
        if (kind == 'Z') {
            finish();
            std::string name;
            told >> name;
            zone = std::make_unique<Zone>(name);
        } else if (kind == 'D') {
            zone->day(told);
        } else if (kind == 'W') {
            zone->reading(told);
        } else if (kind == 'T') {
            zone->moment(told);
        }
    }
    finish();
    // Fewer would mean that the reference has read no data.
    EXPECT_GT(zones, rounds(400));
    EXPECT_GT(days, zones * 700);
    EXPECT_GT(moments, zones);
    std::printf("proof: zones-%.4s-%.4s: %lld zones, %lld days, %lld clock readings, %lld moments "
                "at transitions, %lld differences (no seed)\n",
                GetParam(), GetParam() + 5, zones, days, readings, moments, differences);
}

// The years to come, and those in which a zone left a day out and many set their clocks at
// midnight.
INSTANTIATE_TEST_SUITE_P(, Zones, testing::Values("2026 2027", "2010 2011"),
                         [](const auto &years) { return "From" + std::string(years.param, 4); });

} // namespace
} // namespace tarne::test
