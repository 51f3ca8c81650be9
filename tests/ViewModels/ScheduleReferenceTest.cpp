#include "Rounds.h"
#include "ScheduleFixture.h"
#include "StoredKeys.h"

#include <QDateTime>

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <optional>
#include <random>
#include <set>

// The schedule's lists against a slow and obvious reference over random goals and calendars.

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

/// Works on QDateTime alone, one question after the other, and sorts by exchanging neighbours.
class Reference {
public:
    Reference(const QTimeZone &zone, Date now) : m_zone(zone), m_now(now) {}

    QDateTime local(Date date) const {
        return QDateTime::fromSecsSinceEpoch(
            static_cast<qint64>(std::floor(date.secondsSince1970())), m_zone);
    }
    /// Found by trying the offset of every hour of the three days around it.
    Date start(const ScheduledGoal &goal) const {
        const QTime clock = local(goal.time).time();
        const QDateTime wall(local(goal.date).date(), QTime(clock.hour(), clock.minute()), Qt::UTC);
        const qint64 wallSeconds = wall.toSecsSinceEpoch();
        std::optional<qint64> first;
        qint64 offsetBefore = 0;
        for (qint64 hour = -36; hour <= 36; ++hour) {
            const qint64 probe = wallSeconds + hour * 3600;
            const qint64 offset =
                m_zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(probe, Qt::UTC));
            if (probe + offset < wallSeconds)
                offsetBefore = offset;
            const QDateTime found = QDateTime::fromSecsSinceEpoch(wallSeconds - offset, m_zone);
            if (found.date() == wall.date() && found.time() == wall.time())
                first = std::min(first.value_or(wallSeconds - offset), wallSeconds - offset);
        }
        // A clock time that is jumped over counts on from before the gap.
        return Date::fromUnixSeconds(
            static_cast<double>(first.value_or(wallSeconds - offsetBefore)));
    }
    bool isOnDay(const ScheduledGoal &goal, Date date) const {
        return local(goal.date).date() == local(date).date();
    }

    /// (start, id) of what `belongs`, the starts ascending.
    template <class Belongs>
    std::vector<std::pair<Date, QUuid>> list(const std::vector<ScheduledGoal> &goals,
                                             const Belongs &belongs) const {
        std::vector<std::pair<Date, QUuid>> chosen;
        for (const ScheduledGoal &goal : goals) {
            if (belongs(goal))
                chosen.emplace_back(start(goal), goal.id);
        }
        for (std::size_t pass = 0; pass < chosen.size(); ++pass) {
            for (std::size_t i = 1; i < chosen.size(); ++i) {
                if (chosen[i].first < chosen[i - 1].first)
                    std::swap(chosen[i], chosen[i - 1]);
            }
        }
        return chosen;
    }

    const QTimeZone m_zone;
    const Date m_now;
};

/// Starts alone: goals with equal ones have no settled order.
std::vector<double> starts(const std::vector<std::pair<Date, QUuid>> &list) {
    std::vector<double> seconds;
    for (const auto &[start, id] : list)
        seconds.push_back(start.secondsSinceReferenceDate());
    return seconds;
}
std::vector<double> starts(const std::vector<ScheduledGoal> &goals, const Calendar &calendar) {
    std::vector<double> seconds;
    for (const ScheduledGoal &goal : goals)
        seconds.push_back(goal.scheduledDateTime(calendar).secondsSinceReferenceDate());
    return seconds;
}
std::multiset<QUuid> ids(const std::vector<std::pair<Date, QUuid>> &list) {
    std::multiset<QUuid> ids;
    for (const auto &[start, id] : list)
        ids.insert(id);
    return ids;
}
std::multiset<QUuid> ids(const std::vector<ScheduledGoal> &goals) {
    std::multiset<QUuid> ids;
    for (const ScheduledGoal &goal : goals)
        ids.insert(goal.id);
    return ids;
}

class Cases {
public:
    /// Days around the changes of the clock in spring, three quarters of them close together.
    Date moment() {
        std::uniform_real_distribution<double> near(-3 * 86400.0, 3 * 86400.0);
        std::uniform_real_distribution<double> far(-400 * 86400.0, 400 * 86400.0);
        const Date centre = Date::fromUnixSeconds(1774746000.0); // 2026-03-29T01:00:00 UTC
        return centre + (pick(4) == 0 ? far(m_random) : near(m_random));
    }
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

    std::vector<ScheduledGoal> goals() {
        std::vector<ScheduledGoal> goals;
        for (int count = pick(6); count > 0; --count) {
            goals.emplace_back(moment(), moment(), u"goal"_s);
            goals.back().isCompleted = pick(3) == 0;
        }
        return goals;
    }

private:
    std::mt19937 m_random{20260302};
};

TEST(ScheduleAgainstAReference, ListsAndCountersAreThoseOfTheReferenceInTenThousandCases) {
    const std::array zones{"Europe/Berlin",       "America/New_York", "UTC",
                           "Australia/Lord_Howe", "Asia/Kathmandu",   "America/Santiago"};
    Cases cases;
    for (int number = 0; number < rounds(10'000); ++number) {
        SchedulePlatformFakes fakes;
        const QTimeZone zone(zones[static_cast<std::size_t>(cases.pick(zones.size()))]);
        fakes.calendar = Calendar(zone, QLocale::c());
        const Date now = cases.moment();
        fakes.time.setWallClock(now);
        const auto goals = cases.goals();
        fakes.defaults.setObject(keys::scheduledGoals, *encodeScheduledGoals(goals));
        ScheduleViewModel schedule(fakes.platform());
        const Date selected = cases.moment();
        schedule.setSelectedDate(selected);

        const Reference reference(zone, now);
        const auto ofDay = reference.list(
            goals, [&](const auto &goal) { return reference.isOnDay(goal, selected); });
        const auto today =
            reference.list(goals, [&](const auto &goal) { return reference.isOnDay(goal, now); });
        const auto upcoming = reference.list(goals, [&](const auto &goal) {
            return !goal.isCompleted && reference.start(goal) > now;
        });
        for (const auto &[actual, expected] : {std::pair{schedule.goalsForSelectedDate(), ofDay},
                                               std::pair{schedule.todaysGoals(), today},
                                               std::pair{schedule.upcomingGoals(), upcoming}}) {
            ASSERT_EQ(starts(actual, fakes.calendar), starts(expected)) << "case " << number;
            ASSERT_EQ(ids(actual), ids(expected)) << "case " << number;
        }
    }
}

} // namespace
} // namespace tarne::test
