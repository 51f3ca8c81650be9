#include "SessionWatch.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using Kind = SessionState::Kind;

constexpr double start = 1'700'000'000.0;

/// A store as two writers leave it, read when the test says so.
class ASessionWatch : public testing::Test {
protected:
    /// What the live writer writes now, of a session that ends at `ends`.
    static StoredSession live(double now, double ends = start + 1500.0) {
        return {.isActive = true,
                .id = "A",
                .goals = "Write",
                .timeRemaining = ends - now,
                .duration = 1500.0,
                .lastUpdate = now};
    }
    /// What the other writer leaves of that.
    static StoredSession cleared(double lastUpdate) {
        return {.isActive = false,
                .id = {},
                .goals = {},
                .timeRemaining = 0.0,
                .duration = 0.0,
                .lastUpdate = lastUpdate};
    }

    Kind take(const std::optional<StoredSession> &read, bool isRunning = true) {
        return m_watch.take(read, isRunning, now).kind;
    }
    const SessionState &state() const { return m_watch.state(); }
    std::optional<std::chrono::milliseconds> untilNextReading() const {
        const auto next = m_watch.nextReading();
        if (!next)
            return std::nullopt;
        return std::chrono::duration_cast<std::chrono::milliseconds>(*next - now);
    }

    SessionWatch::Moment now{1h};

private:
    SessionWatch m_watch;
};

TEST_F(ASessionWatch, TellsAnActiveSessionAtOnce) {
    EXPECT_EQ(state().kind, Kind::Unavailable);
    EXPECT_EQ(take(live(start)), Kind::Active);
    EXPECT_EQ(state(), (SessionState{.kind = Kind::Active,
                                     .id = "A",
                                     .goals = "Write",
                                     .ends = start + 1500.0,
                                     .duration = 1500.0}));
}

TEST_F(ASessionWatch, StaysActiveWhileTwoWritersAlternate) {
    take(live(start));
    for (int second = 0; second < 60; ++second) {
        now += 100ms;
        EXPECT_EQ(take(cleared(start + second)), Kind::Active);
        now += 900ms;
        EXPECT_EQ(take(live(start + second + 1.0)), Kind::Active);
    }
}

TEST_F(ASessionWatch, EndsAfterMoreThanASecondOfInactive) {
    take(live(start));
    now += 1s;
    EXPECT_EQ(take(cleared(start)), Kind::Active);
    EXPECT_EQ(untilNextReading(), 1s);
    now += 1s;
    EXPECT_EQ(take(cleared(start)), Kind::Active);
    EXPECT_EQ(untilNextReading(), 250ms);
    now += 250ms;
    EXPECT_EQ(take(cleared(start)), Kind::Inactive);
    EXPECT_EQ(untilNextReading(), std::nullopt);
}

TEST_F(ASessionWatch, ReadsNothingByItselfWithoutASession) {
    EXPECT_EQ(take(cleared(0.0)), Kind::Inactive);
    EXPECT_EQ(untilNextReading(), std::nullopt);
    EXPECT_EQ(take(std::nullopt), Kind::Unavailable);
    EXPECT_EQ(untilNextReading(), std::nullopt);
    take(live(start));
    EXPECT_EQ(untilNextReading(), 1s);
}

TEST_F(ASessionWatch, EndsAtOnceWhenTarneRunsNoMore) {
    take(live(start));
    EXPECT_EQ(take(live(start), false), Kind::Inactive);
}

TEST_F(ASessionWatch, DoesNotTakeWhatAKilledTarneHasLeftForTheNextOnesSession) {
    take(live(start));
    take(live(start), false);
    EXPECT_EQ(take(live(start), true), Kind::Inactive);
    EXPECT_EQ(take(live(start + 10.0), true), Kind::Active);
}

TEST_F(ASessionWatch, StaysActiveThroughAMainThreadThatBlocksForFiveSeconds) {
    take(live(start));
    for (int second = 0; second < 5; ++second) {
        now += 1s;
        EXPECT_EQ(take(live(start)), Kind::Active);
    }
}

TEST_F(ASessionWatch, EndsWhenTheLastSignOfLifeIsFifteenSecondsOld) {
    take(live(start));
    now += 14s;
    EXPECT_EQ(take(live(start)), Kind::Active);
    now += 1s;
    EXPECT_EQ(take(live(start)), Kind::Inactive);
    EXPECT_EQ(take(live(start)), Kind::Inactive);
    EXPECT_EQ(take(live(start + 16.0)), Kind::Active);
}

TEST_F(ASessionWatch, CountsThatAgeInItsOwnTimeWhateverTheWallClockDoes) {
    take(live(start));
    // The clock is set back by an hour, and by two.
    for (const double clock : {start - 3600.0, start - 10'800.0}) {
        now += 1s;
        EXPECT_EQ(take(live(clock)), Kind::Active);
    }
}

TEST_F(ASessionWatch, TellsOfNoStoreAtOnceAndOfTheNextOne) {
    take(live(start));
    EXPECT_EQ(take(std::nullopt), Kind::Unavailable);
    EXPECT_EQ(take(cleared(start)), Kind::Inactive);
    EXPECT_EQ(take(live(start + 1.0)), Kind::Active);
    EXPECT_EQ(state().id, "A");
}

TEST_F(ASessionWatch, KeepsTheSessionsIdThroughAPause) {
    take(live(start));
    take(cleared(start));
    now += 2s;
    ASSERT_EQ(take(cleared(start)), Kind::Inactive);
    StoredSession resumed = live(start + 600.0, start + 2000.0);
    EXPECT_EQ(take(resumed), Kind::Active);
    EXPECT_EQ(state().id, "A");
    EXPECT_EQ(state().ends, start + 2000.0);
}

TEST_F(ASessionWatch, TakesTheSameGoalsAndTheSameEndForTheSameSession) {
    take(live(start));
    take(live(start), false);
    StoredSession restored = live(start + 30.0, start + 1504.0);
    restored.id = "B";
    take(restored);
    EXPECT_EQ(state().id, "A");
    // A restored run has two ids, which alternate.
    restored.id = "C";
    take(restored);
    EXPECT_EQ(state().id, "A");
}

TEST_F(ASessionWatch, TakesOtherGoalsOrAnotherEndForAnotherSession) {
    take(live(start));
    StoredSession other = live(start + 1.0);
    other.id = "B";
    other.goals = "Rest";
    take(other);
    EXPECT_EQ(state().id, "B");
    other = live(start + 2.0, start + 1506.0);
    other.id = "C";
    other.goals = "Rest";
    take(other);
    EXPECT_EQ(state().id, "C");
}

TEST_F(ASessionWatch, TellsTheEndAnewWhenItHasMovedByMoreThanTwoSeconds) {
    take(live(start));
    take(live(start + 1.0, start + 1501.9));
    EXPECT_EQ(state().ends, start + 1500.0);
    take(live(start + 2.0, start + 1502.1));
    EXPECT_EQ(state().ends, start + 1502.1);
    EXPECT_EQ(state().id, "A");
}

TEST_F(ASessionWatch, TellsGoalsThatCanBeTold) {
    StoredSession read = live(start);
    read.goals = "a\nb" + std::string(3000, 'x');
    take(read);
    EXPECT_EQ(state().goals, "a b" + std::string(1997, 'x'));
}

} // namespace
} // namespace tarne::test
