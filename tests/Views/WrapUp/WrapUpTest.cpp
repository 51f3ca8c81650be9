// The feedback sheet, and the way through both sheets.

#include "WrapUpFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST_F(WrapUpTest, TheFeedbackSheetLoadsFirst) {
    openFeedback(u"Review"_s);
    for (const QString &name : {u"Session Feedback"_s, u"1 of 1 tasks completed"_s, u"Review"_s,
                                u"Completed"_s, u"Generating personalized feedback..."_s,
                                u"Your Reflection"_s, u"Fine"_s, u"Edit"_s, u"Save & Share"_s})
        EXPECT_TRUE(ui().has(name)) << qPrintable(name);
    EXPECT_TRUE(ui().has(u"Finish session"_s, QAccessible::Button));
    EXPECT_TRUE(ui().has(u"Finish Session"_s, QAccessible::StaticText));
    EXPECT_FALSE(ui().has(u"Motivation"_s));
}

TEST_F(WrapUpTest, TheFeedbackSheetIsFiveHundredAndEightyBySevenHundred) {
    ui().view().resize(1000, 900);
    openFeedback(u"Review"_s);
    const QRectF panel = place(u"Session Feedback"_s, QAccessible::Dialog);
    EXPECT_EQ(panel.size(), QSizeF(580, 700));
    EXPECT_EQ(place(u"Session Feedback"_s, QAccessible::Heading).topLeft() - panel.topLeft(),
              QPointF(32, 24));
    EXPECT_EQ(panel.right() - place(u"Close"_s).right(), 32);
    EXPECT_EQ(place(u"1 of 1 tasks completed"_s, QAccessible::ProgressBar).width(), 80);
    const QRectF share = place(u"Save & Share"_s);
    const QRectF finish = place(u"Finish session"_s);
    EXPECT_EQ(share.left() - panel.left(), 32);
    EXPECT_EQ(finish.left() - share.right(), 12);
    EXPECT_EQ(panel.right() - finish.right(), 32);
    EXPECT_EQ(panel.bottom() - finish.bottom(), 20);
}

TEST_F(WrapUpTest, AFeedbackSheetFitsIntoALowWindow) {
    ui().view().resize(800, 600);
    openFeedback(u"Review"_s);
    EXPECT_EQ(place(u"Session Feedback"_s, QAccessible::Dialog).size(), QSizeF(580, 600 - 32));
    EXPECT_TRUE(ui().click(u"Finish session"_s));
}

TEST_F(WrapUpTest, WithoutGoalsThereIsNoProgressAndNoRow) {
    openReflection(u",,"_s);
    write(u"x"_s);
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    EXPECT_TRUE(ui().names(QAccessible::ProgressBar).isEmpty());
    EXPECT_FALSE(ui().has(u"0 of 0 tasks completed"_s));
    EXPECT_FALSE(ui().has(u"Not Evaluated"_s));
}

TEST_F(WrapUpTest, NeitherFooterButtonIsEverDisabled) {
    openFeedback(u"Review"_s);
    for (const QString &name : {u"Save & Share"_s, u"Finish session"_s}) {
        EXPECT_TRUE(ui().isEnabled(name)) << qPrintable(name);
        EXPECT_EQ(ui().cursorOver(name), Qt::PointingHandCursor);
    }
    fail(u"No network."_s);
    for (const QString &name : {u"Save & Share"_s, u"Finish session"_s})
        EXPECT_TRUE(ui().isEnabled(name)) << qPrintable(name);
    EXPECT_EQ(ui().cursorOver(u"Close"_s), Qt::PointingHandCursor);
}

TEST_F(WrapUpTest, AnAnswerWithoutSectionsStandsRawInTheFirstCardAboveThreeEmptyOnes) {
    openFeedback(u"Review"_s);
    feedback.gemini.answer(FeedbackFakes::answerWith("# <b>Hello</b>\\nthere"));
    time.runPending();
    ui().settle();
    EXPECT_TRUE(ui().has(u"# <b>Hello</b>\nthere"_s, QAccessible::StaticText));
    for (const QString &title :
         {u"Overall Assessment"_s, u"Patterns Observed"_s, u"Suggestions"_s, u"Motivation"_s})
        EXPECT_TRUE(ui().has(title, QAccessible::Heading)) << qPrintable(title);
}

TEST_F(WrapUpTest, ALongAnswerIsShownBitByBitToItsEnd) {
    openFeedback(u"Review"_s);
    answerWith(FeedbackFakes::answerWith("**Advice:** " + longText.toUtf8()));
    expectTheBeginningOfALongTextAlone();
    EXPECT_TRUE(ui().waitUntil([&] {
        ui().key(Qt::Key_End);
        return showsTextThatEndsWith(u"end."_s);
    }));
}

TEST_F(WrapUpTest, ALongErrorIsShownBitByBitToItsEnd) {
    openFeedback(u"Review"_s);
    feedback.gemini.fail(longText);
    time.runPending();
    expectTheBeginningOfALongTextAlone();
    EXPECT_TRUE(ui().waitUntil([&] {
        ui().key(Qt::Key_End);
        return showsTextThatEndsWith(u"end."_s);
    }));
}

TEST_F(WrapUpTest, ALongGoalIsShownBitByBitInBothSheets) {
    openReflection(longText);
    layOut();
    expectTheBeginningOfALongTextAlone();
    sheet().rate(0, 0);
    sheet().completeReflection();
    awaitRequest();
    layOut();
    expectTheBeginningOfALongTextAlone();
}

TEST_F(WrapUpTest, ALongReflectionIsShownBitByBit) {
    openFeedback(u"Review"_s);
    sheet().feedback()->setReflection(longText);
    layOut();
    expectTheBeginningOfALongTextAlone();
}

TEST_F(WrapUpTest, AfterACloseTheReflectionCanBeCompletedAgainAndAsksAnew) {
    openFeedback(u"Review"_s);
    fail(u"No network."_s);
    ASSERT_TRUE(ui().click(u"Close"_s));
    completeReflection();
    EXPECT_TRUE(ui().has(u"Generating personalized feedback..."_s));
    EXPECT_EQ(feedback.gemini.requests.size(), 2U);
    answer();
    EXPECT_TRUE(ui().has(u"Go on."_s));
}

TEST_F(WrapUpTest, ASessionCanBeFinishedWhileTheCoachingLoads) {
    openFeedback(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Finish session"_s));
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
    answer();
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].suggestions, QString());
    EXPECT_EQ(history()[0].goals[0].status, GoalStatus::completed);
}

TEST_F(WrapUpTest, TheScreenThatComesBackHasNeitherSheetAndALateAnswerBringsNone) {
    const auto hasASheet = [&] {
        return ui().has(u"Session Feedback"_s, QAccessible::Dialog) ||
               ui().has(u"How did you do with your goals?"_s, QAccessible::Dialog);
    };
    openFeedback(u"Review"_s);
    ASSERT_TRUE(hasASheet());
    leaveTabAndReturn();
    layOut();
    EXPECT_FALSE(hasASheet());
    EXPECT_TRUE(ui().has(u"Pause"_s));
    answer();
    EXPECT_FALSE(hasASheet());
    EXPECT_TRUE(ui().has(u"Pause"_s));
    EXPECT_TRUE(history().empty());
}

TEST_F(WrapUpTest, IsUsedByKeyboardAlone) {
    openReflection(u"Review"_s);
    EXPECT_THAT(tabOrder(),
                testing::UnorderedElementsAre(u"Close"_s, u"Completed"_s, u"Partially Completed"_s,
                                              u"Not Completed"_s, u"Reflection"_s));
    tabTo(u"Completed"_s);
    ui().key(Qt::Key_Space);
    tabTo(u"Complete reflection"_s);
    ui().key(Qt::Key_Space);
    ASSERT_TRUE(ui().has(u"Session Feedback"_s));
    tabTo(u"Finish session"_s);
    ui().key(Qt::Key_Return);
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_F(WrapUpTest, AnAnswerShowsItsFourSections) {
    openFeedback(u"Review"_s);
    answer();
    for (const QString &name :
         {u"Overall Assessment"_s, u"Good."_s, u"Patterns Observed"_s, u"Steady."_s,
          u"Suggestions"_s, u"Rest."_s, u"Motivation"_s, u"Go on."_s})
        EXPECT_TRUE(ui().findText(name)) << qPrintable(name);
    EXPECT_FALSE(ui().has(u"Generating personalized feedback..."_s));
}

TEST_F(WrapUpTest, AFailureSaysWhyAndOffersNoRetry) {
    openFeedback(u"Review"_s);
    fail(u"<b>No network.</b>"_s);
    EXPECT_TRUE(ui().has(u"Unable to generate feedback"_s));
    EXPECT_TRUE(ui().has(u"<b>No network.</b>"_s));
    EXPECT_EQ(ui().names(QAccessible::Button),
              QStringList({u"Close"_s, u"Edit"_s, u"Save & Share"_s, u"Finish session"_s}));
}

TEST_F(WrapUpTest, TheReflectionCanBeEdited) {
    openFeedback(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Edit"_s));
    layOut();
    ASSERT_TRUE(ui().click(u"Your Reflection"_s, QAccessible::EditableText));
    ui().type(u"!"_s);
    layOut();
    ASSERT_TRUE(ui().click(u"Done"_s));
    EXPECT_TRUE(sheet().feedback()->reflection().contains(u'!'));
    EXPECT_TRUE(ui().has(sheet().feedback()->reflection()));
    EXPECT_FALSE(ui().has(u"Your Reflection"_s, QAccessible::EditableText));
}

TEST_F(WrapUpTest, AnEmptyReflectionIsSaidToBeMissing) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    EXPECT_TRUE(ui().has(u"No reflection provided"_s));
}

TEST_F(WrapUpTest, WithoutASessionThereIsAnErrorAndNoReflection) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    write(u"Fine"_s);
    controller().endSession({}, true);
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"No session data available"_s); }));
    EXPECT_TRUE(ui().has(u"Unable to generate feedback"_s));
    EXPECT_TRUE(ui().has(u"No reflection provided"_s));
}

TEST_F(WrapUpTest, SaveAndShareCopiesAndStays) {
    openFeedback(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Save & Share"_s));
    EXPECT_TRUE(feedback.pasteboard.text.startsWith(u"# Stillhour Session Summary"));
    EXPECT_TRUE(ui().has(u"Session Feedback"_s));
}

TEST_F(WrapUpTest, CloseUncoversTheReflectionAsItWas) {
    openFeedback(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Close"_s));
    EXPECT_TRUE(ui().has(u"How did you do with your goals?"_s));
    EXPECT_TRUE(ui().accessible(u"Completed"_s)->state().checked);
    EXPECT_EQ(sheet().reflection(), u"Fine"_s);
}

TEST_F(WrapUpTest, FinishEndsTheSessionAndReturnsToSetup) {
    openFeedback(u"Review"_s);
    answer();
    ASSERT_TRUE(ui().click(u"Finish session"_s));
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
    EXPECT_FALSE(ui().has(u"Session Feedback"_s));
    EXPECT_FALSE(controller().currentSession());
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].suggestions, u"Rest."_s);
    EXPECT_EQ(history()[0].reflection, u"Fine"_s);
}

TEST_F(WrapUpTest, EveryPresentationMakesAndDropsItsSheet) {
    openReflection(u"Review"_s);
    sheet().rate(0, 0);
    const auto items = [&] {
        layOut();
        return ui().view().findChildren<QObject *>().size();
    };
    const auto before = items();
    QPointer<SessionFeedbackView> previous;
    for (int i = 0; i < 5; ++i) {
        sheet().completeReflection();
        EXPECT_TRUE(previous.isNull());
        previous = sheet().feedback();
        layOut();
        EXPECT_TRUE(ui().has(u"Session Feedback"_s));
        sheet().feedback()->close();
        EXPECT_EQ(items(), before);
        EXPECT_FALSE(ui().has(u"Session Feedback"_s));
    }
}

} // namespace
} // namespace tarne::test
