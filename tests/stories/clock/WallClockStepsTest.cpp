// The wall clock is set, by a second to ten years in both directions, while a session runs, while
// it is paused, while TARNE is away, and while reminders wait.

#include "NotificationSchedule.h"
#include "ScheduleFixture.h"
#include "SessionFixture.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

constexpr double day = 86'400.0;
constexpr double length = 1'500.0; ///< Of a session, in seconds.
constexpr int randomRuns = 400;
constexpr int turnsOfRun = 60;

std::vector<double> steps() {
    std::vector<double> both;
    for (const double step : {1.0, 59.0, 61.0, 3'600.0, day, 30 * day, 365 * day, 3'652 * day}) {
        both.push_back(step);
        both.push_back(-step);
    }
    return both;
}

std::uint32_t seed() {
    const char *told = std::getenv("TARNE_SEED");
    return told == nullptr ? 1u : static_cast<std::uint32_t>(std::strtoul(told, nullptr, 10));
}

class ASteppedClock : public SessionTest {
protected:
    void step(double seconds) { time.setWallClock(time.now() + seconds); }

    /// What a session that began at `m_start` owes at this moment.
    [[nodiscard]] double owed() const { return std::max(0.0, length - (time.now() - m_start)); }

    void begin() {
        m_start = time.now();
        start(u"Review"_s, length);
    }

    /// What holds after each tick of a session that counts.
    void expectCounting() {
        EXPECT_DOUBLE_EQ(controller().timeRemaining(), owed());
        EXPECT_DOUBLE_EQ(controller().progress(), owed() / length);
        EXPECT_TRUE(controller().isTimerActive());
        EXPECT_FALSE(controller().isTimerComplete());
        EXPECT_EQ(defaults.dateForKey(keys::timerStartTime), m_start);
        EXPECT_TRUE(history().empty());
    }
    void expectRunOut(Date end) {
        EXPECT_DOUBLE_EQ(controller().timeRemaining(), 0.0);
        EXPECT_TRUE(controller().isTimerComplete());
        EXPECT_FALSE(controller().isTimerActive());
        ASSERT_EQ(history().size(), 1u);
        EXPECT_EQ(history().front().sessionDate, end);
        EXPECT_EQ(history().front().duration, length);
    }
    Date m_start;
};

class AStep : public ASteppedClock, public testing::WithParamInterface<double> {};

TEST_P(AStep, InASessionCountsFromTheNextTickOnAndLosesNothingWhenItIsTakenBack) {
    begin();
    pass(10);
    step(GetParam());
    pass(1);
    if (length - 11 - GetParam() > 0)
        expectCounting();
    else
        return expectRunOut(time.now());
    step(-GetParam());
    pass(1);
    EXPECT_EQ(owed(), length - 12);
    expectCounting();
}

TEST_P(AStep, InASessionLeavesItsNotificationAtTheMomentThatWasPlanned) {
    begin();
    const auto planned = userNotifications.pending;
    step(GetParam());
    pass(1);
    ASSERT_EQ(planned.size(), 1u);
    ASSERT_EQ(userNotifications.pending.size(), 1u);
    EXPECT_EQ(userNotifications.pending.front().trigger, planned.front().trigger);
    const Calendar calendar(QTimeZone::utc(), QLocale::c());
    EXPECT_EQ(planned.front().trigger, calendar.dateComponents(m_start + length));
}

TEST_P(AStep, InAPauseIsSeenAfterIt) {
    begin();
    pass(10);
    controller().pauseTimer();
    step(GetParam());
    pass(5);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), length - 10);
    EXPECT_DOUBLE_EQ(controller().progress(), (length - 10) / length);
    controller().resumeTimer();
    pass(1);
    if (owed() > 0)
        expectCounting();
    else
        expectRunOut(time.now());
}

TEST_P(AStep, WhileTheMachineSleepsIsSeenWhenItWakes) {
    begin();
    pass(10);
    time.sleep(Seconds(20));
    step(GetParam());
    center.post(notifications::didWake);
    time.runPending();
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), owed());
    EXPECT_EQ(controller().isTimerComplete(), owed() <= 0);
    EXPECT_EQ(history().size(), owed() <= 0 ? 1u : 0u);
}

TEST_P(AStep, WhileTheProgramIsAwayGoesOnOrEndsAtThePlannedMoment) {
    begin();
    pass(10);
    crash();
    step(GetParam());
    if (owed() > 0) {
        EXPECT_DOUBLE_EQ(controller().timeRemaining(), owed());
        pass(1);
        return expectCounting();
    }
    EXPECT_EQ(controller().currentSession(), std::nullopt);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history().front().sessionDate, m_start + length);
    EXPECT_EQ(defaults.objectForKey(keys::timerStartTime), std::nullopt);
}

TEST_P(AStep, LeavesTheSessionThatIsPublishedTrue) {
    begin();
    step(GetParam());
    pass(2);
    const bool runs = owed() > 0;
    EXPECT_EQ(defaults.boolForKey(keys::sessionActive), runs);
    if (runs) {
        EXPECT_NEAR(defaults.doubleForKey(keys::timeRemaining), owed(), 1.0);
    }
}

TEST_P(AStep, KeepsAGoalThatIsPlannedAtItsDayAndTime) {
    SchedulePlatformFakes fakes;
    ScheduleViewModel schedule(fakes.platform());
    const Date start = fakes.at(9, 15, 30);
    schedule.setSelectedDate(start);
    schedule.setSelectedTime(start);
    schedule.setGoalText(u"Plan"_s);
    schedule.addGoal();
    const auto planned = fakes.notifications.pending;
    fakes.time.setWallClock(fakes.time.now() + GetParam());
    EXPECT_EQ(schedule.scheduledGoals().front().scheduledDateTime(fakes.calendar), start);
    EXPECT_EQ(schedule.upcomingGoals().empty(), fakes.time.now() >= start);
    EXPECT_EQ(schedule.todaysGoals().empty(),
              !fakes.calendar.isDateInSameDay(fakes.time.now(), start));
    ASSERT_EQ(fakes.notifications.pending.size(), 1u);
    EXPECT_EQ(fakes.notifications.pending.front().trigger, planned.front().trigger);
    EXPECT_EQ(planned.front().trigger, fakes.calendar.dateComponents(start - 3'600.0));
}

TEST_P(AStep, ShowsAPendingNotificationOnceAndNeverBeforeItsMoment) {
    const Calendar calendar(QTimeZone::utc(), QLocale::c());
    NotificationSchedule schedule;
    const Date added = time.now(), moment = added + 600.0;
    schedule.add({u"a"_s, {u"a"_s, {}}, calendar.dateComponents(moment)}, added, calendar);
    int shown = 0;
    for (const double now : {GetParam(), 0.0, GetParam(), 599.0, 600.0, 0.0, 600.0, GetParam()}) {
        const auto due = schedule.takeDue(added + now, calendar);
        shown += static_cast<int>(due.size());
        EXPECT_FALSE(!due.empty() && now < 600.0) << now;
        EXPECT_EQ(schedule.nextMoment(calendar), shown == 0 ? std::optional(moment) : std::nullopt);
    }
    EXPECT_EQ(shown, 1);
}

INSTANTIATE_TEST_SUITE_P(, AStep, testing::ValuesIn(steps()));

/// A session under a clock that is set again and again, and what it owes by the rules.
class ARestlessClock : public ASteppedClock {
public:
    void TestBody() override {}

    void run(std::mt19937 &random) {
        begin();
        m_shown = length;
        const std::vector<double> all = steps();
        for (int turn = 0; turn < turnsOfRun && !m_hasRunOut; ++turn) {
            switch (random() % 6) {
            case 0:
                step(all.at(random() % all.size()));
                ++m_steps;
                break;
            case 1:
                controller().pauseTimer();
                m_counts = false;
                break;
            case 2:
                controller().resumeTimer();
                m_counts = true;
                break;
            case 3:
                center.post(notifications::didWake);
                time.runPending();
                look();
                break;
            default:
                pass(1);
                look();
            }
            m_wrong += isAsOwed() ? 0 : 1;
        }
    }
    [[nodiscard]] int stepsTaken() const { return m_steps; }
    /// The turns after which the session was not as it should be.
    [[nodiscard]] int wrong() const { return m_wrong; }

private:
    /// What a tick does, and a wake.
    void look() {
        if (!m_counts)
            return;
        m_shown = owed();
        m_hasRunOut = m_shown <= 0;
    }
    bool isAsOwed() {
        return controller().timeRemaining() == m_shown &&
               controller().isTimerComplete() == m_hasRunOut &&
               controller().isTimerActive() == (m_counts && !m_hasRunOut) &&
               history().size() == (m_hasRunOut ? 1u : 0u);
    }

    double m_shown = length;
    bool m_counts = true;
    bool m_hasRunOut = false;
    int m_steps = 0;
    int m_wrong = 0;
};

TEST(AClockThatIsSetAgainAndAgain, NeverMakesASessionOweMoreOrLessThanItsStartSays) {
    qint64 taken = 0, wrong = 0;
    for (int number = 0; number < randomRuns; ++number) {
        std::mt19937 random(seed() * 100'000 + static_cast<std::uint32_t>(number));
        ARestlessClock one;
        one.run(random);
        taken += one.stepsTaken();
        wrong += one.wrong();
        EXPECT_EQ(one.wrong(), 0) << "session " << number;
    }
    std::printf("proof: clock-steps: %d sessions, %lld steps of a second to ten years in both "
                "directions, %lld wrong times (seed %u)\n",
                randomRuns, taken, wrong, seed());
}

} // namespace
} // namespace tarne::test
