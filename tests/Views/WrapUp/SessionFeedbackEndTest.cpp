#include "FeedbackFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using enum GoalStatus;

/// What leaves the feedback sheet: the summary, and the session's end.
class SessionFeedbackEndTest : public FeedbackTest {};

TEST_F(SessionFeedbackEndTest, SaveAndShareCopiesASummaryAndNothingElse) {
    reflectOn(u"A, B"_s, {completed, partiallyCompleted}, u"Fine"_s);
    feedback();
    answerInFourSections();
    feedback().setReflection(u"Edited"_s);
    defaults.takeWrites();
    feedback().saveAndShareFeedback();
    EXPECT_EQ(pasteboard.calls, QStringList({u"clear"_s, u"set"_s}));
    EXPECT_EQ(pasteboard.text, u"# Stillhour Session Summary\n\n## Goals\n- ✅ A\n- 🔶 B\n"
                               "\n## Reflection\nEdited\n"
                               "\n## AI Feedback\n\n**Overall Assessment:** Good.\n\n"
                               "**Patterns Observed:** Steady.\n\n**Suggestions:** Rest.\n\n"
                               "**Motivation:** Go on.\n\n"_s);
    EXPECT_EQ(log.takeLines(), QStringList(u"Session summary copied to clipboard"_s));
    EXPECT_TRUE(isPresented);
    EXPECT_EQ(defaults.takeWrites(), QStringList());
}

TEST_F(SessionFeedbackEndTest, SaveAndShareTellsTheLogOnceTheSummaryIsCopied) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    log.takeLines();
    QStringList before;
    pasteboard.whenSetting = [&] { before = log.takeLines(); };
    feedback().saveAndShareFeedback();
    EXPECT_EQ(before, QStringList());
    EXPECT_EQ(log.takeLines(), QStringList(u"Session summary copied to clipboard"_s));
}

TEST_F(SessionFeedbackEndTest, SaveAndShareLeavesTheFeedbackOutUntilItIsThere) {
    reflectOn(u"A"_s, {}, {});
    feedback().saveAndShareFeedback();
    EXPECT_EQ(pasteboard.text, u"# Stillhour Session Summary\n\n## Goals\n- ❌ A\n"_s);
}

TEST_F(SessionFeedbackEndTest, SaveAndShareLeavesTheFeedbackOutAfterAFailure) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    gemini.fail(u"No network."_s);
    time.runPending();
    feedback().saveAndShareFeedback();
    EXPECT_EQ(pasteboard.text,
              u"# Stillhour Session Summary\n\n## Goals\n- ✅ A\n\n## Reflection\nFine\n"_s);
    EXPECT_TRUE(history().empty());
}

TEST_F(SessionFeedbackEndTest, FinishMergesTheCoachingIntoTheHistoryAndEndsTheFlow) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    answerInFourSections();
    feedback().setReflection(u"Edited"_s);
    feedback().finishSession();
    EXPECT_EQ(controller().loadLastReflection(), u"Edited"_s);
    EXPECT_EQ(controller().currentSession()->reflection, u"Edited"_s);
    ASSERT_EQ(history().size(), 1U);
    const SessionHistoryEntry entry = history()[0];
    EXPECT_EQ(entry.overallAssessment, u"Good."_s);
    EXPECT_EQ(entry.patternsObserved, u"Steady."_s);
    EXPECT_EQ(entry.suggestions, u"Rest."_s);
    EXPECT_EQ(entry.motivation, u"Go on."_s);
    EXPECT_EQ(entry.reflection, u"Edited"_s);
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 1);
}

TEST_F(SessionFeedbackEndTest, FinishUpdatesTheEntryOfARunOutAndTellsItsReaders) {
    start(u"A"_s, 300.0);
    pass(301);
    controller().saveReflection(u"Fine"_s);
    feedback();
    answerInFourSections();
    int posts = 0;
    const auto registration =
        center.addObserver(notifications::sessionHistoryUpdated, [&] { ++posts; });
    feedback().finishSession();
    EXPECT_EQ(posts, 1);
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].suggestions, u"Rest."_s);
}

TEST_F(SessionFeedbackEndTest, FinishStoresTheReflectionThenTheCoachingAndThenCloses) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    answerInFourSections();
    feedback().setReflection(u"Edited"_s);
    int posts = 0;
    const auto registration = center.addObserver(notifications::sessionHistoryUpdated, [&] {
        ++posts;
        EXPECT_EQ(controller().loadLastReflection(), u"Edited"_s);
        EXPECT_TRUE(isPresented);
        EXPECT_EQ(completions, 0);
    });
    feedback().finishSession();
    EXPECT_EQ(posts, 1);
}

TEST_F(SessionFeedbackEndTest, FinishWritesAReflectionOfBlanksBack) {
    reflectOn(u"A"_s, {}, u"Fine"_s);
    feedback().setReflection(u" "_s);
    feedback().finishSession();
    EXPECT_EQ(controller().loadLastReflection(), u" "_s);
}

TEST_F(SessionFeedbackEndTest, FinishOfASessionThatIsGoneAddsNothingToTheHistory) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    answerInFourSections();
    controller().endSession(std::nullopt, true);
    feedback().finishSession();
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].suggestions, QString());
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 1);
}

TEST_F(SessionFeedbackEndTest, FinishDoesNotWriteAnEmptiedReflectionBack) {
    reflectOn(u"A"_s, {}, u"Fine"_s);
    feedback().setReflection(QString());
    feedback().finishSession();
    EXPECT_EQ(controller().loadLastReflection(), u"Fine"_s);
}

TEST_F(SessionFeedbackEndTest, FinishWithAnEmptiedReflectionKeepsTheStoredOneAndAddsTheCoaching) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    controller().saveSessionToHistory(*controller().currentSession(), {}, {}, {}, {}, u"Fine"_s);
    feedback();
    answerInFourSections();
    feedback().setReflection(QString());
    feedback().finishSession();
    EXPECT_EQ(controller().loadLastReflection(), u"Fine"_s);
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].reflection, u"Fine"_s);
    EXPECT_EQ(history()[0].suggestions, u"Rest."_s);
}

TEST_F(SessionFeedbackEndTest, FinishLowersTheFlagBeforeItTellsThatAllIsDone) {
    reflectOn(u"A"_s, {completed}, {});
    bool wasPresented = true;
    SessionFeedbackView view(controller(), feedbackPlatform(), &isPresented,
                             [&] { wasPresented = isPresented; });
    view.finishSession();
    EXPECT_FALSE(wasPresented);
}

TEST_F(SessionFeedbackEndTest, FinishWithoutFeedbackWritesNothingToTheHistory) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    gemini.fail(u"No network."_s);
    time.runPending();
    feedback().finishSession();
    EXPECT_TRUE(history().empty());
    EXPECT_EQ(completions, 1);
}

TEST_F(SessionFeedbackEndTest, FinishWhileLoadingIsAsAfterAFailure) {
    start(u"A"_s, 300.0);
    pass(301);
    controller().saveReflection(u"Fine"_s);
    feedback().finishSession();
    answerInFourSections();
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].reflection, QString());
    EXPECT_EQ(history()[0].motivation, QString());
}

TEST_F(SessionFeedbackEndTest, TheGoalsStayWhileTheSheetLeavesThoughTheSessionIsGone) {
    reflectOn(u"A"_s, {completed}, {});
    SessionFeedbackView view(controller(), feedbackPlatform(), &isPresented,
                             [this] { controller().endSession(std::nullopt, true); });
    view.finishSession();
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(view.hasGoals());
}

TEST_F(SessionFeedbackEndTest, CloseOnlyCloses) {
    reflectOn(u"A"_s, {completed}, u"Fine"_s);
    feedback();
    answerInFourSections();
    feedback().setReflection(u"Edited"_s);
    feedback().close();
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 0);
    EXPECT_TRUE(history().empty());
    EXPECT_EQ(controller().loadLastReflection(), u"Fine"_s);
}

} // namespace
} // namespace tarne::test
