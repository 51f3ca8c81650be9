#pragma once

#include "Calendar.h"
#include "Rounds.h"
#include "SessionHistoryEntry.h"

#include <QDateTime>

#include <random>
#include <vector>

namespace tarne::test {

/// How many random cases hold a calculation against its slow reference.
inline constexpr quint64 randomCases = rounds(10'000);

/// A random history with the calendar and the moment that it is looked at: zones with and without
/// daylight saving, with skipped and doubled midnights and half-hour offsets, weeks that begin on
/// Saturday, Sunday and Monday, and moments that lie close to the turns of days.
class RandomHistory {
public:
    explicit RandomHistory(quint64 seed)
        : m_random(seed),
          calendar(calendars()[static_cast<std::size_t>(number(0, calendarCount - 1))]),
          zone(calendar.timeZone()),
          now(moment(QDate(2019, 1, 1).addDays(number(0, 3000)))) {
        const int entries = number(0, 12);
        const int spread = pick({3, 8, 40, 400, 900});
        const QDate today =
            QDate(2001, 1, 1).addDays(qint64(now.secondsSinceReferenceDate() / 86400));
        for (int i = 0; i < entries; ++i)
            history.push_back(entry(moment(today.addDays(-number(-2, spread)))));
    }

    int number(int lowest, int highest) {
        return std::uniform_int_distribution(lowest, highest)(m_random);
    }

private:
    template <class Value>
    Value pick(std::initializer_list<Value> values) {
        return values.begin()[number(0, static_cast<int>(values.size()) - 1)];
    }

    Date moment(const QDate &day) {
        const int second = pick({0, 1, 3599, 3600, 43200, 86399, number(0, 86399)});
        const QDateTime local(day, QTime(0, 0).addSecs(second), zone);
        return Date::fromUnixSeconds(static_cast<double>(local.toSecsSinceEpoch()) +
                                     pick({0.0, 0.25}));
    }

    SessionHistoryEntry entry(Date date) {
        SessionHistoryEntry made{.sessionDate = date, .goals = {}, .duration = 1500};
        for (int goals = number(0, 3); goals > 0; --goals) {
            SessionGoal goal{.text = QString::number(number(0, 9))};
            if (const int status = number(0, 3); status < 3)
                goal.status = allGoalStatuses[static_cast<std::size_t>(status)];
            made.goals.push_back(goal);
        }
        return made;
    }

    static constexpr int calendarCount = 45;

    /// Made once: a zone's table takes longer than a case.
    static const std::vector<Calendar> &calendars() {
        static const std::vector<Calendar> all = [] {
            std::vector<Calendar> made;
            for (const char *name : {"UTC", "Europe/Berlin", "America/Santiago", "Africa/Cairo",
                                     "Asia/Kolkata", "America/St_Johns", "Australia/Lord_Howe",
                                     "America/Havana", "Pacific/Auckland"}) {
                for (const char *locale : {"en_US", "de_DE", "ar_EG", "ja_JP", "fa_IR"})
                    made.emplace_back(QTimeZone(QByteArray(name)),
                                      QLocale(QString::fromLatin1(locale)));
            }
            return made;
        }();
        return all;
    }

    std::mt19937_64 m_random;

public:
    Calendar calendar;
    QTimeZone zone;
    Date now;
    std::vector<SessionHistoryEntry> history;
};

} // namespace tarne::test
