#include "GoalStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(GoalStatus, AllStatusesAreOfferedFromCompletedToNotCompleted) {
    EXPECT_THAT(allGoalStatuses, ElementsAre(GoalStatus::completed, GoalStatus::partiallyCompleted,
                                             GoalStatus::notCompleted));
}

TEST(GoalStatus, TheOrderRunsFromNotCompletedUpToCompleted) {
    EXPECT_LT(GoalStatus::notCompleted, GoalStatus::partiallyCompleted);
    EXPECT_LT(GoalStatus::partiallyCompleted, GoalStatus::completed);
    EXPECT_LT(GoalStatus::notCompleted, GoalStatus::completed);
    EXPECT_GT(GoalStatus::completed, GoalStatus::notCompleted);
    EXPECT_LE(GoalStatus::notCompleted, GoalStatus::partiallyCompleted);
    EXPECT_GE(GoalStatus::completed, GoalStatus::completed);
    EXPECT_FALSE(GoalStatus::completed < GoalStatus::completed);
}

TEST(GoalStatus, EachStatusHasItsStoredText) {
    EXPECT_EQ(rawValue(GoalStatus::completed), u"completed"_s);
    EXPECT_EQ(rawValue(GoalStatus::partiallyCompleted), u"partially_completed"_s);
    EXPECT_EQ(rawValue(GoalStatus::notCompleted), u"not_completed"_s);
}

TEST(GoalStatus, EachStatusHasWordsForTheUser) {
    EXPECT_EQ(displayName(GoalStatus::completed), u"Completed"_s);
    EXPECT_EQ(displayName(GoalStatus::partiallyCompleted), u"Partially Completed"_s);
    EXPECT_EQ(displayName(GoalStatus::notCompleted), u"Not Completed"_s);
}

TEST(GoalStatus, AStoredTextYieldsItsStatus) {
    for (const GoalStatus status : allGoalStatuses)
        EXPECT_EQ(goalStatusFromRawValue(rawValue(status)), status);
}

TEST(GoalStatus, AnyOtherTextYieldsNoStatus) {
    for (const QString &text : {u"Completed"_s, u""_s, u"completed "_s, u"partiallyCompleted"_s,
                                u"PARTIALLY_COMPLETED"_s, u"done"_s})
        EXPECT_EQ(goalStatusFromRawValue(text), std::nullopt) << qPrintable(text);
}
