#include "FeedbackPrompt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// What is asked about a session with the goals "Write report" (completed) and "Review" (not rated)
/// and the reflection "Went well.".
const QString promptOfTwoGoals =
    u"You are an expert productivity coach trained in Ansel Varga's philosophy of Stillhour. "
    u"Your role is to analyze a user's Stillhour session and provide concise, structured "
    u"feedback. Input includes:\n\n"
    u"- Goals: Write report, Review\n"
    u"- Status: Write report — completed, Review — not evaluated\n"
    u"- Reflection: Went well.\n\n"
    u"Output the feedback in the following exact structure:\n\n"
    u"### Session Feedback\n\n"
    u"**Overall Assessment:** [1–2 sentences that summarize performance with encouragement.]\n\n"
    u"**Patterns Observed:** [Point out trends like distraction, over-ambition, strong "
    u"execution, or consistent completion. Use the goal statuses + reflection to support this.]"
    u"\n\n"
    u"**Advice:** [Offer practical, stillhour-aligned suggestions: reduce distractions, scope "
    u"goals better, build consistency, or environment design.]\n\n"
    u"**Motivation:** [End with an encouraging reminder about Stillhour as a skill that "
    u"compounds with practice.]\n\n"
    u"Keep feedback concise, actionable, and in a calm, reflective tone — like Ansel Varga "
    u"writing directly to the user. Do not repeat the user's goals verbatim. Focus on insight, "
    u"not summary."_s;

FocusSession sessionWith(std::vector<SessionGoal> goals) {
    FocusSession session;
    session.goal = u"the raw line"_s;
    session.goals = std::move(goals);
    return session;
}

TEST(FeedbackPrompt, AsksInTheFixedWordsAboutGoalsStatusAndReflection) {
    FocusSession session = sessionWith(
        {{.text = u"Write report"_s, .status = GoalStatus::completed}, {.text = u"Review"_s}});
    session.reflection = u"Went well."_s;
    EXPECT_EQ(buildFeedbackPrompt(session), promptOfTwoGoals);
}

TEST(FeedbackPrompt, NamesTheFourLabelsThatTheAnswerIsCutAt) {
    const QString prompt = buildFeedbackPrompt(FocusSession{});
    EXPECT_TRUE(prompt.contains(u"**Overall Assessment:**"));
    EXPECT_TRUE(prompt.contains(u"**Patterns Observed:**"));
    EXPECT_TRUE(prompt.contains(u"**Advice:**"));
    EXPECT_TRUE(prompt.contains(u"**Motivation:**"));
}

TEST(FeedbackPrompt, SaysThatThereIsNoReflectionOnlyWhenItIsAbsent) {
    FocusSession session = sessionWith({});
    EXPECT_TRUE(buildFeedbackPrompt(session).contains(
        u"\n- Reflection: No reflection provided\n\nOutput the feedback"));
    session.reflection = QString();
    EXPECT_TRUE(buildFeedbackPrompt(session).contains(u"\n- Reflection: \n\nOutput the feedback"));
}

TEST(FeedbackPrompt, JoinsGoalsByCommasAndEscapesNone) {
    EXPECT_EQ(formatGoalsForPrompt(sessionWith({{.text = u"a, b"_s}, {.text = u"\"c\"\nd"_s}})),
              u"a, b, \"c\"\nd"_s);
}

TEST(FeedbackPrompt, ParsesTheLineOfASessionWithoutGoals) {
    FocusSession session;
    session.goal = u" one ,, two "_s;
    EXPECT_EQ(formatGoalsForPrompt(session), u"one, two"_s);
    EXPECT_EQ(formatGoalStatusesForPrompt(session), u"one — not evaluated, two — not evaluated"_s);
}

TEST(FeedbackPrompt, GivesTheRawLineWhenItParsesToNoGoal) {
    FocusSession session;
    session.goal = u" , \n,"_s;
    EXPECT_EQ(formatGoalsForPrompt(session), u" , \n,"_s);
    EXPECT_EQ(formatGoalStatusesForPrompt(session), u"No specific goal statuses available"_s);
}

TEST(FeedbackPrompt, PutsEachStatusIntoLowerCase) {
    EXPECT_EQ(formatGoalStatusesForPrompt(
                  sessionWith({{.text = u"A"_s, .status = GoalStatus::completed},
                               {.text = u"B"_s, .status = GoalStatus::partiallyCompleted},
                               {.text = u"C"_s, .status = GoalStatus::notCompleted},
                               {.text = u"D"_s}})),
              u"A — completed, B — partially completed, C — not completed, D — not evaluated"_s);
}

TEST(FeedbackPrompt, CarriesAHundredKilobytesOfGoalText) {
    const QString text(100'000, u'x');
    const QString prompt = buildFeedbackPrompt(sessionWith({{.text = text}}));
    EXPECT_TRUE(prompt.contains(u"\n- Goals: "_s + text + u"\n- Status: "_s + text + u" — not"_s));
}

} // namespace
} // namespace tarne::test
