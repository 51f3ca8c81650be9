#include "SessionSummary.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(SessionSummary, OfNothingIsItsTwoHeadings) {
    EXPECT_EQ(createSessionSummary({}, {}, std::nullopt),
              u"# Stillhour Session Summary\n\n## Goals\n"_s);
}

TEST(SessionSummary, HoldsGoalsReflectionAndCoaching) {
    const ParsedFeedback feedback{u"Good."_s, u"Steady."_s, u"Rest."_s, u"Go on."_s};
    EXPECT_EQ(createSessionSummary({{.text = u"A"_s, .status = GoalStatus::completed},
                                    {.text = u"B"_s, .status = GoalStatus::partiallyCompleted},
                                    {.text = u"C"_s, .status = GoalStatus::notCompleted},
                                    {.text = u"D"_s}},
                                   u"Fine\nday"_s, feedback),
              u"# Stillhour Session Summary\n\n"
              "## Goals\n"
              "- ✅ A\n"
              "- 🔶 B\n"
              "- ❌ C\n"
              "- ❌ D\n"
              "\n## Reflection\n"
              "Fine\nday\n"
              "\n## AI Feedback\n\n"
              "**Overall Assessment:** Good.\n\n"
              "**Patterns Observed:** Steady.\n\n"
              "**Suggestions:** Rest.\n\n"
              "**Motivation:** Go on.\n\n"_s);
}

TEST(SessionSummary, LeavesOutWhatIsEmpty) {
    EXPECT_EQ(createSessionSummary({}, {}, ParsedFeedback{.advice = u"Rest."_s}),
              u"# Stillhour Session Summary\n\n## Goals\n"
              "\n## AI Feedback\n\n"
              "**Suggestions:** Rest.\n\n"_s);
}

TEST(SessionSummary, HoldsAReflectionOfBlanks) {
    EXPECT_EQ(createSessionSummary({}, u" "_s, std::nullopt),
              u"# Stillhour Session Summary\n\n## Goals\n\n## Reflection\n \n"_s);
}

TEST(SessionSummary, NamesTheCoachingEvenWhenAllItsSectionsAreEmpty) {
    EXPECT_TRUE(createSessionSummary({}, {}, ParsedFeedback{}).endsWith(u"\n## AI Feedback\n\n"));
}

} // namespace
} // namespace tarne::test
