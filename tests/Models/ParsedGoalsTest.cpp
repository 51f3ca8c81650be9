#include "ParsedGoals.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(ParsedGoals, AreTheSessionsOwnWithTheirIdsAndRatings) {
    const FocusSession session{
        .goal = u"a, b"_s,
        .goals = {{.text = u"other"_s, .status = GoalStatus::partiallyCompleted}}};
    const auto goals = parsedGoals(session);
    ASSERT_EQ(goals.size(), 1u);
    EXPECT_EQ(goals[0].id, session.goals[0].id);
    EXPECT_EQ(goals[0].text, u"other"_s);
    EXPECT_EQ(goals[0].status, GoalStatus::partiallyCompleted);
}

TEST(ParsedGoals, AreParsedFromTheLineOfASessionThatHasNone) {
    const auto goals = parsedGoals(FocusSession{.goal = u" a,, b "_s});
    ASSERT_EQ(goals.size(), 2u);
    EXPECT_EQ(goals[0].text, u"a"_s);
    EXPECT_EQ(goals[1].text, u"b"_s);
    EXPECT_FALSE(goals[1].status);
}

TEST(ParsedGoals, AreNoneWithoutASession) {
    EXPECT_TRUE(parsedGoals(std::nullopt).empty());
}

} // namespace
} // namespace tarne::test
