#include "HistoryGrouping.h"

#include "RandomHistory.h"
#include "SlowCalendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The history's groups against a slow and obvious reference over random histories, calendars and
// moments.

using namespace tarne;
using namespace Qt::StringLiterals;
using test::randomCases;
using test::RandomHistory;
using test::SlowCalendar;

namespace {

/// Where a label stands: the labels without a year below all others, the later day first.
struct Place {
    enum Kind { weekday, dayOfTheYear, dated } kind;
    Date moment; ///< Of a dated label.
    QDate day;   ///< Of the others, in some leap year; of a weekday, in some week.
};

class Reference {
public:
    explicit Reference(const RandomHistory &random)
        : m_random(random), m_slow(random.zone), m_today(m_slow.day(random.now)) {}

    [[nodiscard]] QString label(Date date) const {
        const QLocale locale = plainLocale();
        const QDate day = m_slow.day(date);
        if (day == m_today)
            return u"Today"_s;
        if (day == m_today.addDays(-1))
            return u"Yesterday"_s;
        if (isThisWeek(day))
            return locale.dayName(day.dayOfWeek());
        const QString inYear =
            locale.monthName(day.month(), QLocale::ShortFormat) + u' ' + locale.toString(day.day());
        return day.year() == m_today.year() ? inYear
                                            : inYear + u", "_s + locale.toString(day.year());
    }
    [[nodiscard]] Place place(Date date) const {
        const QDate day = m_slow.day(date);
        if (day == m_today)
            return {Place::dated, m_random.now, {}};
        if (day == m_today.addDays(-1))
            return {Place::dated, m_slow.daysBefore(1, m_random.now), {}};
        if (isThisWeek(day))
            return {Place::weekday, {}, day};
        if (day.year() == m_today.year())
            return {Place::dayOfTheYear, {}, QDate(2000, day.month(), day.day())};
        return {Place::dated, m_slow.startOf(day), {}};
    }

private:
    [[nodiscard]] QLocale plainLocale() const {
        QLocale locale = m_random.calendar.locale();
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
        return locale;
    }
    [[nodiscard]] bool isThisWeek(const QDate &day) const {
        QDate first = m_today;
        while (first.dayOfWeek() != plainLocale().firstDayOfWeek())
            first = first.addDays(-1);
        return day >= first && day < first.addDays(7);
    }

    const RandomHistory &m_random;
    SlowCalendar m_slow;
    QDate m_today;
};

/// Whether `a` has to stand above `b`, where that is told: how weekdays and days of this year stand
/// to one another is not.
bool standsAbove(const Place &a, const Place &b) {
    if (a.kind != b.kind)
        return a.kind == Place::dated;
    return a.kind == Place::dated ? a.moment > b.moment : a.day > b.day;
}

} // namespace

TEST(HistoryGroupingReference, Labels) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const Reference reference(random);
        const HistoryGrouping grouping(random.calendar, random.now);
        for (const SessionHistoryEntry &entry : random.history) {
            ASSERT_EQ(grouping.formatDateForGrouping(entry.sessionDate),
                      reference.label(entry.sessionDate))
                << seed;
        }
    }
}

TEST(HistoryGroupingReference, AGroupHoldsTheEntriesOfItsLabelInTheirOrder) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const Reference reference(random);
        std::size_t grouped = 0;
        for (const HistoryGroup &group :
             HistoryGrouping(random.calendar, random.now).groupedEntries(random.history)) {
            std::vector<QUuid> expected;
            for (const SessionHistoryEntry &entry : random.history) {
                if (reference.label(entry.sessionDate) == group.key)
                    expected.push_back(entry.id);
            }
            std::vector<QUuid> found;
            for (const SessionHistoryEntry &entry : group.value)
                found.push_back(entry.id);
            ASSERT_EQ(found, expected) << seed;
            grouped += found.size();
        }
        ASSERT_EQ(grouped, random.history.size()) << seed;
    }
}

TEST(HistoryGroupingReference, NoGroupStandsBelowOneThatItHasToStandAbove) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const Reference reference(random);
        const auto groups =
            HistoryGrouping(random.calendar, random.now).groupedEntries(random.history);
        for (std::size_t upper = 0; upper < groups.size(); ++upper) {
            for (std::size_t lower = upper + 1; lower < groups.size(); ++lower) {
                const Date above = groups[upper].value.front().sessionDate;
                const Date below = groups[lower].value.front().sessionDate;
                ASSERT_FALSE(standsAbove(reference.place(below), reference.place(above)))
                    << seed << ' ' << qPrintable(groups[upper].key) << " over "
                    << qPrintable(groups[lower].key);
            }
        }
    }
}

TEST(HistoryGroupingReference, InsideAGroupTheLaterStandsFirst) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        std::vector<SessionHistoryEntry> entries = RandomHistory(seed).history;
        HistoryGrouping::sortForDisplay(entries);
        for (std::size_t i = 1; i < entries.size(); ++i)
            ASSERT_GE(entries[i - 1].sessionDate, entries[i].sessionDate) << seed;
    }
}
