#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

class SessionWrapUp : public test::SessionTest {};

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

TEST_F(SessionWrapUp, AReflectionWithoutASessionStaysInThePreferences) {
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"went well"_s);
    EXPECT_FALSE(controller().currentSession());
}

} // namespace
} // namespace tarne
