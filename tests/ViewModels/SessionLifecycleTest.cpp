#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class SessionLifecycle : public test::SessionTest {};

TEST_F(SessionLifecycle, CreatesASessionFromAGoalLine) {
    UserPreferences preferences;
    preferences.defaultBlockedApps = {u"Mail"_s};
    preferences.defaultBlockedWebsites = {u"news.example"_s};
    controller().updatePreferences(preferences);
    const FocusSession session = controller().createSession(u"Write report, Review, "_s, 300);
    EXPECT_EQ(session.goal, u"Write report, Review, "_s);
    EXPECT_EQ(texts(session.goals), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(session.duration, 300.0);
    EXPECT_EQ(session.startTime, time.now());
    EXPECT_FALSE(session.endTime);
    EXPECT_FALSE(session.reflection);
    EXPECT_EQ(session.blockedApps, QStringList{u"Mail"_s});
    EXPECT_EQ(session.blockedWebsites, QStringList{u"news.example"_s});
    EXPECT_FALSE(session.completed);
    EXPECT_EQ(controller().loadLastGoal(), u"Write report, Review, "_s);
}

TEST_F(SessionLifecycle, CreatingASessionDoesNotStartIt) {
    const FocusSession first = controller().createSession(u"a"_s, 300);
    const FocusSession second = controller().createSession(u"a"_s, 300);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_NE(first.id, second.id);
}

TEST_F(SessionLifecycle, CreatingASessionLeavesTheRunningOneAlone) {
    start(u"Review"_s, 300);
    pass(10);
    const QUuid id = controller().currentSession()->id;
    defaults.takeWrites();
    std::ignore = controller().createSession(u"Write report"_s, 600);
    ASSERT_TRUE(controller().currentSession());
    EXPECT_EQ(controller().currentSession()->id, id);
    EXPECT_EQ(controller().timeRemaining(), 290.0);
    EXPECT_THAT(defaults.takeWrites(), ElementsAre(QString(keys::userPreferences)));
}

TEST_F(SessionLifecycle, StartingRunsTheCountdownFromNow) {
    const FocusSession session = controller().createSession(u"Review"_s, 300);
    pass(20);
    controller().startSession(session);
    EXPECT_EQ(controller().currentSession()->id, session.id);
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_EQ(controller().progress(), 1.0);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_EQ(defaults.dateForKey(keys::timerStartTime), time.now())
        << "the count-down's start is not the session's";
}

TEST_F(SessionLifecycle, StartingLogsTheGoalLast) {
    controller();
    log.takeLines();
    start(u"Review"_s, 300);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"📱 Starting new session: Review"_s));
}

TEST_F(SessionLifecycle, StartingReplacesARunningSessionWithoutSavingIt) {
    start(u"First"_s, 300);
    const std::size_t timers = time.timerCount();
    pass(100);
    start(u"Second"_s, 600);
    EXPECT_EQ(controller().currentSession()->goal, u"Second"_s);
    EXPECT_EQ(controller().timeRemaining(), 600.0);
    EXPECT_TRUE(history().empty());
    EXPECT_EQ(time.timerCount(), timers) << "the first session's timer is gone";
    pass(250);
    EXPECT_EQ(defaults.stringForKey(keys::timerSessionGoal), u"Second"_s);
}

TEST_F(SessionLifecycle, EndingSavesStopsAndClears) {
    start(u"Write report, Review"_s, 300);
    pass(100);
    controller().endSession(std::nullopt, true);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_EQ(controller().progress(), 1.0);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now());
    EXPECT_EQ(history()[0].duration, 300.0) << "a session ended early keeps its planned length";
    EXPECT_EQ(texts(history()[0].goals), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(history()[0].reflection, QString());
}

TEST_F(SessionLifecycle, EndingAfterTheRunOutShowsTheLengthOfTheCountdownThatEnded) {
    start(u"Review"_s, 300);
    pass(320);
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    EXPECT_EQ(controller().progress(), 0.0);
    controller().endSession(std::nullopt, true);
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_EQ(controller().progress(), 1.0);
}

TEST_F(SessionLifecycle, TellsTheObserversOfEachPropertyOfEachChange) {
    QStringList told;
    const auto note = [&](const QString &property, auto value) {
        told += u"%1 %2"_s.arg(property).arg(value);
    };
    QObject::connect(&controller(), &SessionViewModel::timeRemainingChanged,
                     [&](double seconds) { note(u"remaining"_s, seconds); });
    QObject::connect(&controller(), &SessionViewModel::progressChanged,
                     [&](double progress) { note(u"progress"_s, progress); });
    QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                     [&](bool active) { note(u"active"_s, int{active}); });
    QObject::connect(&controller(), &SessionViewModel::isTimerCompleteChanged,
                     [&](bool complete) { note(u"complete"_s, int{complete}); });
    start(u"Review"_s, 2);
    EXPECT_THAT(std::exchange(told, {}), ElementsAre(u"remaining 2"_s, u"active 1"_s));
    pass(1);
    EXPECT_THAT(std::exchange(told, {}), ElementsAre(u"remaining 1"_s, u"progress 0.5"_s));
    controller().pauseTimer();
    controller().resumeTimer();
    EXPECT_THAT(std::exchange(told, {}), ElementsAre(u"active 0"_s, u"active 1"_s));
    pass(1);
    EXPECT_THAT(std::exchange(told, {}),
                ElementsAre(u"remaining 0"_s, u"progress 0"_s, u"active 0"_s, u"complete 1"_s));
    controller().setTimerComplete(false);
    EXPECT_THAT(told, ElementsAre(u"complete 0"_s));
}

TEST_F(SessionLifecycle, EndingLogsEachStepInItsOrder) {
    start(u"Review"_s, 300);
    log.takeLines();
    controller().endSession(u"went well"_s, true);
    EXPECT_THAT(log.takeLines(),
                ElementsAre(u"📱 Ending session: Review"_s,
                            u"📱 Added new session to history: Review"_s,
                            u"📱 Session saved to history: Review"_s,
                            u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s,
                            u"📱 Session ended, server remains running for future sessions"_s));
    EXPECT_EQ(history()[0].reflection, u"went well"_s);
}

TEST_F(SessionLifecycle, EndingUncompletedLeavesTheHistoryUntouchedAndDoesAllElse) {
    start(u"Review"_s, 300);
    defaults.takeWrites();
    log.takeLines();
    controller().endSession(u"gave up"_s, false);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_THAT(defaults.takeWrites(), Not(Contains(QString(keys::sessionHistory))));
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
    EXPECT_TRUE(userNotifications.pending.empty());
    EXPECT_THAT(log.takeLines(),
                ElementsAre(u"📱 Ending session: Review"_s,
                            u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s,
                            u"📱 Session ended, server remains running for future sessions"_s));
}

TEST_F(SessionLifecycle, NobodySeesTheEndedSessionAsTheCurrentOne) {
    start(u"Review"_s, 300);
    QStringList seen;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged, [&] {
        const auto &session = controller().currentSession();
        seen += !session ? u"none"_s : session->endTime ? u"ended"_s : u"running"_s;
    });
    controller().endSession(std::nullopt, true);
    EXPECT_EQ(seen, QStringList{u"none"_s});
}

TEST_F(SessionLifecycle, EndingWithoutASessionDoesNothingAtAll) {
    controller();
    log.takeLines();
    defaults.takeWrites();
    controller().endSession(std::nullopt, true);
    EXPECT_THAT(log.takeLines(), ElementsAre());
    EXPECT_THAT(defaults.takeWrites(), ElementsAre());
}

} // namespace
} // namespace tarne::test
