#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class SessionWrapUp : public test::SessionTest {
protected:
    /// What the reflection sheet does: the first goal is rated as completed.
    void reflect(const QString &text) {
        const auto &goals = controller().currentSession()->goals;
        controller().updateGoalStatuses({{goals[0].id, GoalStatus::completed}});
        controller().saveReflection(text);
    }

    /// What the feedback sheet does.
    void saveFeedback() {
        const FocusSession session = *controller().currentSession();
        controller().saveSessionToHistory(session, u"o"_s, u"p"_s, u"s"_s, u"m"_s,
                                          session.reflection.value_or(QString()));
    }

    /// What the timer screen does when the sheets have closed.
    void finish() { controller().endSession(std::nullopt, true); }

    FocusSession sessionOfEveryField() {
        FocusSession session = controller().createSession(u"a, b"_s, 1234.5);
        session.goals[0].status = GoalStatus::notCompleted;
        session.startTime = time.now() - 17;
        session.endTime = time.now() - 3;
        session.reflection = u"early thoughts"_s;
        session.blockedApps = {u"Mail"_s};
        session.blockedWebsites = {u"news.example"_s};
        session.completed = true;
        return session;
    }

    static void expectFeedback(const SessionHistoryEntry &entry, const QString &reflection) {
        EXPECT_EQ(entry.overallAssessment, u"o"_s);
        EXPECT_EQ(entry.patternsObserved, u"p"_s);
        EXPECT_EQ(entry.suggestions, u"s"_s);
        EXPECT_EQ(entry.motivation, u"m"_s);
        EXPECT_EQ(entry.reflection, reflection);
        EXPECT_EQ(entry.goals[0].status, GoalStatus::completed);
    }
};

TEST_F(SessionWrapUp, OfARunOutWithin300SecondsLeavesOneEntryWithRatingsAndTexts) {
    start(u"a, b"_s, 300);
    pass(300);
    const Date runOut = time.now();
    const QUuid id = history()[0].id;
    pass(100);
    reflect(u"went well"_s);
    pass(100);
    saveFeedback();
    pass(99);
    finish();
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].id, id);
    EXPECT_EQ(history()[0].sessionDate, runOut);
    expectFeedback(history()[0], u"went well"_s);
    EXPECT_EQ(history()[0].goals[1].status, std::nullopt);
}

TEST_F(SessionWrapUp, OfAnEarlyEndDuringWhichTheTimeRunsOutLosesTheReflectionToTheRunOut) {
    start(u"a, b"_s, 300);
    pass(250);
    reflect(u"went well"_s);
    pass(50);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_FALSE(controller().currentSession()->reflection);
    const Date runOut = time.now();
    pass(200);
    saveFeedback();
    finish();
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, runOut);
    expectFeedback(history()[0], QString());
}

TEST_F(SessionWrapUp, OfAnEarlyEndThatLasts300SecondsBeyondTheRunOutLeavesTwoEntries) {
    start(u"a, b"_s, 300);
    pass(250);
    reflect(u"went well"_s);
    pass(50);
    const Date runOut = time.now();
    pass(300);
    saveFeedback();
    finish();
    ASSERT_EQ(history().size(), 2u);
    EXPECT_EQ(history()[0].sessionDate, runOut);
    expectFeedback(history()[0], QString());
    EXPECT_EQ(history()[1].sessionDate, runOut + 300);
    EXPECT_EQ(history()[1].overallAssessment, QString());
    EXPECT_EQ(history()[1].goals[0].status, GoalStatus::completed);
}

TEST_F(SessionWrapUp, RatingsReachTheGoalsOfTheirIds) {
    start(u"a, b, c"_s, 300);
    const FocusSession before = *controller().currentSession();
    controller().updateGoalStatuses({{before.goals[0].id, GoalStatus::completed},
                                     {before.goals[2].id, GoalStatus::notCompleted},
                                     {QUuid::createUuid(), GoalStatus::partiallyCompleted}});
    const FocusSession &after = *controller().currentSession();
    EXPECT_EQ(after.goals[0].status, GoalStatus::completed);
    EXPECT_EQ(after.goals[1].status, std::nullopt);
    EXPECT_EQ(after.goals[2].status, GoalStatus::notCompleted);
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.startTime, before.startTime);
}

TEST_F(SessionWrapUp, AGoalThatIsNotInTheMapKeepsItsRating) {
    start(u"a, b"_s, 300);
    const auto goals = controller().currentSession()->goals;
    controller().updateGoalStatuses(
        {{goals[0].id, GoalStatus::completed}, {goals[1].id, GoalStatus::notCompleted}});
    controller().updateGoalStatuses({{goals[0].id, GoalStatus::partiallyCompleted}});
    controller().updateGoalStatuses({});
    EXPECT_EQ(controller().currentSession()->goals[0].status, GoalStatus::partiallyCompleted);
    EXPECT_EQ(controller().currentSession()->goals[1].status, GoalStatus::notCompleted);
}

TEST_F(SessionWrapUp, RatingsChangeNothingElseOfTheSession) {
    controller().startSession(sessionOfEveryField());
    const FocusSession before = *controller().currentSession();
    controller().updateGoalStatuses({{before.goals[1].id, GoalStatus::completed}});
    FocusSession expected = before;
    expected.goals[1].status = GoalStatus::completed;
    EXPECT_EQ(encodeFocusSession(*controller().currentSession()), encodeFocusSession(expected));
}

TEST_F(SessionWrapUp, AnEmptyMapOfRatingsStillReassignsTheSession) {
    start(u"a"_s, 300);
    int assignments = 0;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged,
                     [&] { ++assignments; });
    controller().updateGoalStatuses({});
    EXPECT_EQ(assignments, 1);
    EXPECT_EQ(controller().currentSession()->goals[0].status, std::nullopt);
}

TEST_F(SessionWrapUp, RatingWithoutASessionDoesNothing) {
    controller().updateGoalStatuses({{QUuid::createUuid(), GoalStatus::completed}});
    EXPECT_FALSE(controller().currentSession());
}

TEST_F(SessionWrapUp, AReflectionIsSavedInThePreferencesAndTheSession) {
    start(u"a"_s, 300);
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"went well"_s);
    EXPECT_EQ(UserPreferences::load(defaults).lastReflection, u"went well"_s);
    EXPECT_EQ(controller().currentSession()->reflection, u"went well"_s);
    EXPECT_EQ(controller().currentSession()->goal, u"a"_s);
}

TEST_F(SessionWrapUp, AReflectionChangesNothingElseOfTheSession) {
    controller().startSession(sessionOfEveryField());
    FocusSession expected = *controller().currentSession();
    controller().saveReflection(u"later thoughts"_s);
    expected.reflection = u"later thoughts"_s;
    EXPECT_EQ(encodeFocusSession(*controller().currentSession()), encodeFocusSession(expected));
}

TEST_F(SessionWrapUp, AReflectionReachesThePreferencesBeforeTheSession) {
    start(u"a"_s, 300);
    QStringList order;
    QObject::connect(&controller(), &SessionViewModel::userPreferencesChanged,
                     [&] { order += u"preferences"_s; });
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged, [&] {
        order += u"session"_s;
        EXPECT_EQ(UserPreferences::load(defaults).lastReflection, u"went well"_s) << "and stored";
    });
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(order, (QStringList{u"preferences"_s, u"session"_s}));
}

TEST_F(SessionWrapUp, AReflectionWithoutASessionStaysInThePreferences) {
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"went well"_s);
    EXPECT_FALSE(controller().currentSession());
}

} // namespace
} // namespace tarne::test
